// Golden dumps: the text that a sample's record must give, one file per sample.
#pragma once

#include <string>

namespace probe_test {

// Set by --update-golden: write the files instead of comparing.
extern bool updateGolden;
// Folder of the golden files; --golden-folder sets another one.
extern std::string goldenFolder;

// Compares `text` with the golden file `name`.txt: empty when they are equal, otherwise what is
// wrong, a missing file included.
std::string compareWithGolden(const std::string& name, const std::string& text);

}  // namespace probe_test
