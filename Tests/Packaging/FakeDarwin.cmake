# Makes this project configurable for macOS on another system: provides what Qt's packages look for there and cannot
# find here.
foreach(package WrapOpenGL WrapVulkanHeaders)
  if(NOT TARGET ${package}::${package})
    add_library(${package}::${package} INTERFACE IMPORTED GLOBAL)
  endif()
endforeach()
