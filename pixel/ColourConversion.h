#pragma once

namespace orbel {

// Two hue models, both in single precision. Components and lightness are in 0 to 1. No input is an
// error: values outside and NaN give values outside and NaN. Plain functions for any thread.
//
// Both are what projects were made with, not what a textbook has: the transfer modes of hue,
// saturation, colour and luminosity use the first, the modulation by alpha the second.

/// The largest and the smallest of three.
float max3(float a, float b, float c);
float min3(float a, float b, float c);

/// Hue in sextants (0 to 6), saturation, and luma (0.299, 0.587, 0.114) as lightness. Nearly black,
/// with no component of a ten-thousandth, gives 0, 0, 0; nearly grey has hue and saturation 0.
void rgb2hsl(float r, float g, float b, float& h, float& s, float& l);

/// The colour of a hue in sextants and a saturation in 0 to 1, brought to exactly the luma `l`.
void hsl2rgb(float h, float s, float l, float& r, float& g, float& b);

/// Hue in degrees (0 to 360), saturation as a percentage (0 to 100) and value.
void RGB_to_HSL(float r, float g, float b, float& h, float& s, float& v);

/// Hue in degrees and saturation in 0 to 1, not in percent: the pair is not symmetric, and meant
/// so. For a negative hue or NaN the outputs keep what they held.
void HSL_to_RGB(float h, float s, float v, float& r, float& g, float& b);

} // namespace orbel
