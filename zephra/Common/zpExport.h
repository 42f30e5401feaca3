#pragma once
// ZEPHRA_API marks what a host program of the library may use: the classes and functions of the
// object model and the documented helpers. The library is built with hidden visibility, so
// everything else stays inside it.

#define ZEPHRA_API __attribute__((visibility("default")))
