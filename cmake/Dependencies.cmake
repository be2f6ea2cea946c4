# The one runtime dependency (ICU) and the test framework. Both are checked
# here so that a missing package stops configuration with the fix spelled out.
set(ZMFI_APT_HINT "Install the missing packages with:\n  sudo apt-get install libicu-dev libgtest-dev libgmock-dev cmake ninja-build g++")

find_package(ICU COMPONENTS uc i18n QUIET)
if(NOT ICU_FOUND)
  message(FATAL_ERROR "ICU (libicu-dev) was not found; zmfi needs it for string values and regular expressions.\n${ZMFI_APT_HINT}")
endif()

if(ZMFI_BUILD_TESTS)
  find_package(GTest QUIET)
  if(NOT GTest_FOUND)
    message(FATAL_ERROR "GoogleTest (libgtest-dev) was not found; it is needed to build the tests.\n${ZMFI_APT_HINT}\nOr configure with -DZMFI_BUILD_TESTS=OFF to build zmfi alone.")
  endif()
  include(GoogleTest)
endif()
