#pragma once

#include <cinttypes>

// The header is plain C and says nothing of C++.
extern "C" {
#include <frei0r.h>
}
