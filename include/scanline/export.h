#pragma once

/**
 * @file
 * The export macro of the library.
 *
 * `SCANLINE_API` marks each public function. Building the shared library exports it, using the
 * library imports it; with `SCANLINE_STATIC`, which the static build's CMake target and
 * pkg-config file define for their users, it is empty.
 */

#if defined(SCANLINE_STATIC)
#define SCANLINE_API
#elif defined(_WIN32)
#if defined(scanline_EXPORTS)
#define SCANLINE_API __declspec(dllexport)
#else
#define SCANLINE_API __declspec(dllimport)
#endif
#else
#define SCANLINE_API __attribute__((visibility("default")))
#endif
