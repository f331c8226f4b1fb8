# corvane_deploy_arguments(<variable> <Qt's version> <folders ...>): the arguments of qt_generate_deploy_app_script for
# that version, with those folders searched for libraries. The script's name is returned in `deploy_script`.
function(corvane_deploy_arguments variable version)
  set(arguments TARGET Corvane NO_UNSUPPORTED_PLATFORM_ERROR)
  # Renamed between 6.4 and 6.8, which accepts both.
  if(version VERSION_LESS 6.8)
    list(APPEND arguments FILENAME_VARIABLE deploy_script)
  else()
    list(APPEND arguments OUTPUT_SCRIPT deploy_script)
  endif()
  if(version VERSION_GREATER_EQUAL 6.7 AND ARGN)
    list(TRANSFORM ARGN PREPEND -libpath= OUTPUT_VARIABLE options)
    list(APPEND arguments DEPLOY_TOOL_OPTIONS ${options})
  endif()
  set(${variable} "${arguments}" PARENT_SCOPE)
endfunction()
