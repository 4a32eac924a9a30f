#pragma once

#include <array>
#include <cstddef>

namespace orbel {

/// The numbers under which `TransferComposite` knows its modes. They are not in menu order, and
/// some modes have several.
enum TransferCode : int {
    TRANSFER_NOTHING = 0, ///< leaves the layer as it is, as all numbers without a mode do
    TRANSFER_BEHIND = 1,
    TRANSFER_IN_FRONT = 2,
    TRANSFER_HUE_TOO = 3,
    TRANSFER_PLUS = 4,
    TRANSFER_MULTIPLY = 5,
    TRANSFER_SCREEN = 6,
    TRANSFER_OVERLAY = 7,
    TRANSFER_SOFT_LIGHT = 8,
    TRANSFER_HARD_LIGHT = 9,
    TRANSFER_DARKEN = 10,
    TRANSFER_LIGHTEN = 11,
    TRANSFER_DIFFERENCE = 12,
    TRANSFER_HUE = 13,
    TRANSFER_SATURATION = 14,
    TRANSFER_COLOUR = 15,
    TRANSFER_LUMA = 16,
    TRANSFER_EXCLUSION_FIRST = 17, ///< to 22, all of them exclusion
    TRANSFER_EXCLUSION_LAST = 22,
    TRANSFER_COLOUR_DODGE = 23,
    TRANSFER_COLOUR_BURN = 24,
    TRANSFER_EXCLUSION = 25,
    TRANSFER_SCREEN_SPECIAL = 35,
    TRANSFER_CODES = 36, ///< one more than the last of them
};

/// The ways of combining two images, each under one code or several.
enum class TransferMode {
    Behind,
    InFront,
    Plus,
    Multiply,
    Screen,
    Overlay,
    SoftLight,
    HardLight,
    Darken,
    Lighten,
    Difference,
    ColourDodge,
    ColourBurn,
    Exclusion,
    Hue,
    Saturation,
    Colour,
    Luma,
    ScreenSpecial,
};

/// What a code does. Tables by code are filled from this list and nothing else.
struct TransferRow {
    int code = TRANSFER_NOTHING;
    TransferMode mode = TransferMode::InFront;
    bool mayBeOpaque = true; ///< whether the caller may have the output's alpha forced to maximum
};

inline constexpr std::array<TransferRow, 26> TRANSFER_ROWS{{
    {TRANSFER_BEHIND, TransferMode::Behind, false},
    {TRANSFER_IN_FRONT, TransferMode::InFront, false},
    {TRANSFER_HUE_TOO, TransferMode::Hue},
    {TRANSFER_PLUS, TransferMode::Plus},
    {TRANSFER_MULTIPLY, TransferMode::Multiply},
    {TRANSFER_SCREEN, TransferMode::Screen},
    {TRANSFER_OVERLAY, TransferMode::Overlay},
    {TRANSFER_SOFT_LIGHT, TransferMode::SoftLight},
    {TRANSFER_HARD_LIGHT, TransferMode::HardLight},
    {TRANSFER_DARKEN, TransferMode::Darken},
    {TRANSFER_LIGHTEN, TransferMode::Lighten},
    {TRANSFER_DIFFERENCE, TransferMode::Difference},
    {TRANSFER_HUE, TransferMode::Hue},
    {TRANSFER_SATURATION, TransferMode::Saturation},
    {TRANSFER_COLOUR, TransferMode::Colour},
    {TRANSFER_LUMA, TransferMode::Luma},
    {TRANSFER_EXCLUSION_FIRST, TransferMode::Exclusion},
    {TRANSFER_EXCLUSION_FIRST + 1, TransferMode::Exclusion},
    {TRANSFER_EXCLUSION_FIRST + 2, TransferMode::Exclusion},
    {TRANSFER_EXCLUSION_FIRST + 3, TransferMode::Exclusion},
    {TRANSFER_EXCLUSION_FIRST + 4, TransferMode::Exclusion},
    {TRANSFER_EXCLUSION_LAST, TransferMode::Exclusion},
    {TRANSFER_COLOUR_DODGE, TransferMode::ColourDodge},
    {TRANSFER_COLOUR_BURN, TransferMode::ColourBurn},
    {TRANSFER_EXCLUSION, TransferMode::Exclusion},
    {TRANSFER_SCREEN_SPECIAL, TransferMode::ScreenSpecial},
}};

/// The row of a code; null for a code that does nothing.
[[nodiscard]] constexpr const TransferRow* findTransfer(int code) {
    for (const TransferRow& row : TRANSFER_ROWS) {
        if (row.code == code) {
            return &row;
        }
    }
    return nullptr;
}

/// Calls `enter(code)` for every code of a mode.
template<typename Enter>
constexpr void forEachCodeOf(TransferMode mode, const Enter& enter) {
    for (const TransferRow& row : TRANSFER_ROWS) {
        if (row.mode == mode) {
            enter(static_cast<std::size_t>(row.code));
        }
    }
}

/// One entry of the "Transfer Mode" menu.
struct TransferMenuEntry {
    const char* name;
    TransferCode code;
    TransferCode floatCode; ///< what float pixels take instead
};

/// The menu in its order. Float pixels are added where others are screened: meant.
inline constexpr std::array<TransferMenuEntry, 18> TRANSFER_MENU{{
    {"None", TRANSFER_NOTHING, TRANSFER_NOTHING},
    {"Normal", TRANSFER_IN_FRONT, TRANSFER_IN_FRONT},
    {"Add", TRANSFER_PLUS, TRANSFER_PLUS},
    {"Multiply", TRANSFER_MULTIPLY, TRANSFER_MULTIPLY},
    {"Screen", TRANSFER_SCREEN, TRANSFER_PLUS},
    {"Overlay", TRANSFER_OVERLAY, TRANSFER_OVERLAY},
    {"Soft Light", TRANSFER_SOFT_LIGHT, TRANSFER_SOFT_LIGHT},
    {"Hard Light", TRANSFER_HARD_LIGHT, TRANSFER_HARD_LIGHT},
    {"Color Dodge", TRANSFER_COLOUR_DODGE, TRANSFER_COLOUR_DODGE},
    {"Color Burn", TRANSFER_COLOUR_BURN, TRANSFER_COLOUR_BURN},
    {"Darken", TRANSFER_DARKEN, TRANSFER_DARKEN},
    {"Lighten", TRANSFER_LIGHTEN, TRANSFER_LIGHTEN},
    {"Difference", TRANSFER_DIFFERENCE, TRANSFER_DIFFERENCE},
    {"Exclusion", TRANSFER_EXCLUSION, TRANSFER_EXCLUSION},
    {"Hue", TRANSFER_HUE, TRANSFER_HUE},
    {"Saturation", TRANSFER_SATURATION, TRANSFER_SATURATION},
    {"Color", TRANSFER_COLOUR, TRANSFER_COLOUR},
    {"Luminosity", TRANSFER_LUMA, TRANSFER_LUMA},
}};

} // namespace orbel
