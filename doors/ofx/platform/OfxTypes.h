#pragma once

// The types of the OpenFX C interface: the published headers where they are installed, else our own
// declarations. What the interface calls by name stands in OfxNames.h.
#if __has_include(<ofxCore.h>) && __has_include(<ofxImageEffect.h>) && __has_include(<ofxParam.h>)
#include <ofxCore.h>
#include <ofxImageEffect.h>
#include <ofxParam.h>
#include <ofxProperty.h>
#else
#include "doors/ofx/platform/OfxDeclarations.h" // IWYU pragma: export
#endif
