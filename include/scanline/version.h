#pragma once

/**
 * @file
 * The version of the library, as numbers and as a string.
 *
 * Written from the version of the CMake project.
 */

/** First number of the version. */
#define SCANLINE_VERSION_MAJOR 0
/** Second number: until 1.0, a change of it may break what uses the library. */
#define SCANLINE_VERSION_MINOR 1
/** Third number. */
#define SCANLINE_VERSION_PATCH 0

/** The version as one number that grows with it: 10203 for 1.2.3. */
#define SCANLINE_VERSION \
  (SCANLINE_VERSION_MAJOR * 10000 + SCANLINE_VERSION_MINOR * 100 + SCANLINE_VERSION_PATCH)

/** The version as a string. */
#define SCANLINE_VERSION_STRING "0.1.0"
