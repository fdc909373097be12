#pragma once

#include <string>

namespace program {

/**
 * Refuses images that OpenCV reads without an error but not as they were meant: TIFF files with a
 * lossy encoding, several pages, a palette or separate planes, and files that are shorter than
 * their header states. Refuses also a TIFF or PNG whose header states more than its bytes can
 * hold, before OpenCV allocates it. Other files pass.
 *
 * @throws Failure (badInput) with the reason and the remedy
 */
void checkImageHeader(const std::string& path);

}  // namespace program
