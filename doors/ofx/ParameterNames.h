#pragma once

#include <string_view>

namespace orbel::ofx {

/// The name by which projects keep the parameter, or the group, of an identifier of the table. Once
/// made it never changes. Null for an identifier that is not declared.
[[nodiscard]] const char* parameterName(int id);

/// The identifier behind a name; 0 when there is none.
[[nodiscard]] int parameterId(std::string_view name);

/// The shape as SVG text: beside the table, since only doors of this kind need it.
inline constexpr const char* SHAPE_TEXT = "shapeText";
/// The page on which a host lays the parameters out.
inline constexpr const char* PAGE = "page";

} // namespace orbel::ofx
