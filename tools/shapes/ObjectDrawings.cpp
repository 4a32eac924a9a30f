#include "tools/shapes/Drawings.h"
#include "tools/shapes/Flow.h"
#include "tools/shapes/Regular.h"

#include <cmath>

namespace orbel::artwork {

namespace {

/// Twelve teeth with arcs on tip and root, then the hole of the axle.
std::vector<Outline> gear() {
    constexpr int TEETH = 12;
    constexpr double TIP = 100;
    constexpr double ROOT = 78;
    constexpr double PITCH = 360.0 / TEETH;
    Outline rim{onClock({}, ROOT, -PITCH / 2), {}, false};
    for (int i = 0; i < TEETH; ++i) {
        const double axis = PITCH * i;
        rim.arcTo({}, onClock({}, ROOT, axis - PITCH * 0.30), true);
        rim.lineTo(onClock({}, TIP, axis - PITCH * 0.18));
        rim.arcTo({}, onClock({}, TIP, axis + PITCH * 0.18), true);
        rim.lineTo(onClock({}, ROOT, axis + PITCH * 0.30));
        rim.arcTo({}, i + 1 == TEETH ? rim.start : onClock({}, ROOT, axis + PITCH / 2), true);
    }
    rim.close();
    return {rim, circle({}, 36)};
}

/// Down one side to the point that strikes, and back up the other.
Outline lightningBolt() {
    const Point corners[] = {{54, 0}, {84, 0}, {57, 56}, {88, 50}, {22, 150}, {47, 66}, {14, 74}};
    return polygon(corners);
}

/// Lens, glint, and the handle from the rim round its grip and back to the rim.
std::vector<Outline> magnifier() {
    constexpr double LENS = 62;
    constexpr double NECK = 6;
    constexpr double GRIP = 12;
    constexpr double SHOULDER = -92;
    constexpr double END = -148;
    Outline glint{onClock({}, 45, -84), {}, false};
    glint.arcTo({}, onClock({}, 45, -53), true); // readers lose the form of an only cubic
    glint.arcTo({}, onClock({}, 45, -22), true);
    const double rim = -std::sqrt(LENS * LENS - NECK * NECK);
    Outline handle{{-NECK, rim}, {}, false};
    handle.curveTo({-NECK, rim - 14}, {-GRIP, SHOULDER + 14}, {-GRIP, SHOULDER});
    handle.lineTo({-GRIP, END});
    handle.arcTo({0, END}, {GRIP, END}, true);
    handle.lineTo({GRIP, SHOULDER});
    handle.curveTo({GRIP, SHOULDER + 14}, {NECK, rim - 14}, {NECK, rim});
    return {circleFrom({}, LENS, 135), glint,
            mapped(handle, [](Point p) { return turned(p, 135); })};
}

/// From the tip of the tail round the balloon and back into the tail.
Outline talkEllipse() {
    Outline balloon{onClock({}, 100, 222), {}, false};
    balloon.arcTo({}, onClock({}, 100, 196), true);
    balloon = mapped(balloon, [](Point p) { return Point{p.x, p.y * 0.7}; });
    const Point tip{-82, 104};
    Outline outline{tip, {}, false};
    outline.curveTo({-68, 92}, {-63, 74}, balloon.start);
    outline.cubics.insert(outline.cubics.end(), balloon.cubics.begin(), balloon.cubics.end());
    outline.curveTo({-34, 86}, {-54, 100}, tip);
    outline.close();
    return outline;
}

Outline talkSquare() {
    constexpr double SIDE = 90;
    constexpr double TOP = -90;
    constexpr double BOTTOM = 60;
    constexpr double R = 24;
    const Point tip{-66, 104};
    Outline outline{tip, {}, false};
    outline.lineTo({-58, BOTTOM});
    outline.lineTo({-SIDE + R, BOTTOM});
    outline.arcTo({-SIDE + R, BOTTOM - R}, {-SIDE, BOTTOM - R}, true);
    outline.lineTo({-SIDE, TOP + R});
    outline.arcTo({-SIDE + R, TOP + R}, {-SIDE + R, TOP}, true);
    outline.lineTo({SIDE - R, TOP});
    outline.arcTo({SIDE - R, TOP + R}, {SIDE, TOP + R}, true);
    outline.lineTo({SIDE, BOTTOM - R});
    outline.arcTo({SIDE - R, BOTTOM - R}, {SIDE - R, BOTTOM}, true);
    outline.lineTo({-16, BOTTOM});
    outline.close();
    return outline;
}

/// A big tongue that whips over, a small one beside it, and the hot core.
std::vector<Outline> taperedFlame() {
    Outline outer{{62, 0}, {}, false};
    const Point right[] = {{68, 36}, {92, 74}, {98, 104}, {52, 150}, {4, 104}, {10, 74}, {14, 46}};
    flowOn(&outer, right, {Point{-0.35, 1}, Point{-0.1, -1}});
    const Point left[] = {{28, 68}, {41, 54}, {48, 28}, {62, 0}};
    flowOn(&outer, left, {Point{0.2, 1}, Point{0.7, -1}});
    outer.close();
    Outline core{{58, 74}, {}, false};
    const Point around[] = {{72, 112}, {53, 136}, {34, 112}, {58, 74}};
    flowOn(&core, around, {Point{-0.1, 1}, Point{0.7, -1}});
    core.close();
    return {outer, core};
}

} // namespace

std::vector<Drawing> objectDrawings() {
    return {
        {"Gear shape 01", gear()},         {"Lightning Bolt", {lightningBolt()}},
        {"Simple Magnifier", magnifier()}, {"Talk Ellipse", {talkEllipse()}},
        {"Talk Square", {talkSquare()}},   {"Tapered Flame", taperedFlame()},
    };
}

} // namespace orbel::artwork
