#pragma once

// The X library's macros have names that gtest's headers use, so gtest comes first.
// clang-format off
#include <gtest/gtest.h>
#include <X11/Xlib.h>
// clang-format on
