#pragma once

/// VEXXML_API marks what the shared library exports; everything else stays hidden in it.
#if defined(VEXXML_STATIC)
#define VEXXML_API
#elif defined(_WIN32)
#if defined(VEXXML_BUILDING)
#define VEXXML_API __declspec(dllexport)
#else
#define VEXXML_API __declspec(dllimport)
#endif
#else
#define VEXXML_API __attribute__((visibility("default")))
#endif
