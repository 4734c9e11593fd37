#include "tests/support/paths.h"

const char* const kLibraryPath = VESSA_LIBRARY_PATH;
const char* const kSourceFolder = VESSA_SOURCE_DIR;
