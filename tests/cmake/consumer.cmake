# The installed package serves a client through find_package and through pkg-config. A sanitized build
# is left out: its libraries need the sanitizer runtime that a plain client does not link.
if(NOT ZR_SANITIZE AND NOT ZR_SANITIZE_THREAD)
  add_test(NAME InstalledPackage.ServesCMakeAndPkgConfigClients
           COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/consumer/run.sh ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR})
  set_tests_properties(InstalledPackage.ServesCMakeAndPkgConfigClients PROPERTIES TIMEOUT 300 RUN_SERIAL TRUE)
endif()
