# corvane_precompile(<target> [OF <other>]): precompiles the headers below once for all sources of the target, or reuses
# those of another target, which must be compiled with the same options. Only with CORVANE_PRECOMPILE: a source with a
# missing include fails in builds without it.
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
    # ccache needs the first to see which headers were used; the second makes all code position-independent, as Qt
    # requires.
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
