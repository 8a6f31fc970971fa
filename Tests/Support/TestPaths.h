// Where this build's tests find what isn't compiled into them. One source knows the tree's place,
// so that all others compile to the same in every clone.
#pragma once

namespace TarvaneTests::TestPaths {

const char* sourceFolder();
/// The pictures that drawings are compared with, and where one that differs is left.
const char* goldenFolder();
const char* goldenFailuresFolder();
/// The program that plays signals of known level.
const char* toneSource();

}  // namespace TarvaneTests::TestPaths
