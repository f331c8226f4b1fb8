# corvane_precompile(<target> [OF <other>]): compiles the headers below once rather than in every source of the target,
# or takes what another target has compiled. Both must be compiled with the same options. Only where
# CORVANE_PRECOMPILE asks for it: a source that forgets an include fails in the builds that do without.
function(corvane_precompile target)
  if(NOT CORVANE_PRECOMPILE)
    return()
  endif()
  cmake_parse_arguments(ARG "" "OF" "HEADERS" ${ARGN})
  if(ARG_OF)
    target_precompile_headers(${target} REUSE_FROM ${ARG_OF})
  else()
    target_precompile_headers(${target} PRIVATE ${ARG_HEADERS})
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # What ccache needs to see which headers were taken from there; and the same kind of code everywhere, as Qt asks
    # for.
    target_compile_options(${target} PRIVATE -fpch-preprocess -fPIC)
  endif()
endfunction()

set(CORVANE_STANDARD_HEADERS
  <algorithm> <array> <chrono> <cstdint> <filesystem> <functional> <map> <memory> <optional> <span> <string>
  <string_view> <variant> <vector>)
set(CORVANE_TEST_HEADERS ${CORVANE_STANDARD_HEADERS} <gmock/gmock.h> <gtest/gtest.h>)
set(CORVANE_WIDGET_HEADERS
  <QAbstractButton> <QApplication> <QBoxLayout> <QEvent> <QFont> <QIcon> <QImage> <QLabel> <QList> <QMenu> <QPainter>
  <QPainterPath> <QPointer> <QScrollArea> <QString> <QTimer> <QVariant> <QWidget>)
