# The runtime dependencies (ICU, and libarchive for compressed input) and
# the test framework. A missing required package stops configuration with
# the fix spelled out; without libarchive zmfi still builds, and reads plain
# PGN only.
set(ZMFI_APT_HINT "Install the missing packages with:\n  sudo apt-get install libicu-dev libarchive-dev libgtest-dev libgmock-dev cmake ninja-build g++")

find_package(ICU COMPONENTS uc i18n QUIET)
if(NOT ICU_FOUND)
  message(FATAL_ERROR "ICU (libicu-dev) was not found; zmfi needs it for string values and regular expressions.\n${ZMFI_APT_HINT}")
endif()

find_package(LibArchive QUIET)
if(LibArchive_FOUND)
  set(ZMFI_LIBARCHIVE ON)
else()
  set(ZMFI_LIBARCHIVE OFF)
  message(WARNING "libarchive (libarchive-dev) was not found: zmfi will read plain PGN only, not .gz, .bz2, .xz, .zst or .zip files.\n  sudo apt-get install libarchive-dev")
endif()

if(ZMFI_BUILD_TESTS)
  find_package(GTest QUIET)
  if(NOT GTest_FOUND)
    message(FATAL_ERROR "GoogleTest (libgtest-dev) was not found; it is needed to build the tests.\n${ZMFI_APT_HINT}\nOr configure with -DZMFI_BUILD_TESTS=OFF to build zmfi alone.")
  endif()
  include(GoogleTest)
endif()
