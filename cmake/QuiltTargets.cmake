# QuiltTargets.cmake - one library per subsystem and one test executable per subsystem.
#
# Each subsystem folder owns its sources: the library is every .cpp in the folder, so a
# developer adds a class by adding its two files. Layering is stated by the DEPENDS list.

# quilt_subsystem_library(NAME DEPENDS lib...)
function(quilt_subsystem_library name)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(sources)
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${ARG_DEPENDS})
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} INTERFACE ${ARG_DEPENDS})
  endif()
endfunction()

# quilt_test_suite(NAME DEPENDS lib...): every *.cpp of the folder in one GoogleTest binary.
function(quilt_test_suite name)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/app
                                             ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} GTest::gtest GTest::gtest_main GTest::gmock)
  target_compile_definitions(${name} PRIVATE
    QUILT_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    QUILT_BINARY_DIR="${PROJECT_BINARY_DIR}")
  gtest_discover_tests(${name} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} DISCOVERY_TIMEOUT 60)
endfunction()

# quilt_python_test(NAME FILE [ENVIRONMENT var=value...]): one pytest file, run through
# tests/python/run_pytest.sh, which reports the test skipped (exit 77, with the reason) where
# Python, pytest or what the file needs is missing.
function(quilt_python_test name file)
  cmake_parse_arguments(ARG "" "" "ENVIRONMENT" ${ARGN})
  set(python "")
  if(Python3_Interpreter_FOUND)
    set(python ${Python3_EXECUTABLE})
  endif()
  add_test(NAME ${name}
           COMMAND bash ${PROJECT_SOURCE_DIR}/tests/python/run_pytest.sh "${python}" ${CMAKE_CURRENT_SOURCE_DIR}/${file})
  set_tests_properties(${name} PROPERTIES SKIP_RETURN_CODE 77
    ENVIRONMENT "QUILT_SOURCE_DIR=${PROJECT_SOURCE_DIR};QUILT_BINARY=$<TARGET_FILE:quilt>;${ARG_ENVIRONMENT}")
endfunction()
