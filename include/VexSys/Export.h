#pragma once

/// VEXSYS_API marks what the platform library exports; everything else stays hidden in it.
#if defined(VEXSYS_STATIC)
#define VEXSYS_API
#elif defined(_WIN32)
#if defined(VEXSYS_BUILDING)
#define VEXSYS_API __declspec(dllexport)
#else
#define VEXSYS_API __declspec(dllimport)
#endif
#else
#define VEXSYS_API __attribute__((visibility("default")))
#endif
