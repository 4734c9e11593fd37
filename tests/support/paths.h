#pragma once

// Where the build has put what tests load and read. One source alone knows, so that the others compile to the same bytes
// wherever the tree lies.

extern const char* const kLibraryPath;   ///< the library under test
extern const char* const kSourceFolder;  ///< the tree
