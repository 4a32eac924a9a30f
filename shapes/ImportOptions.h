#pragma once

namespace orbel {

/// How a drawing becomes outlines.
struct ImportOptions {
    enum class Take { Strokes, Fills, Both };
    enum class Order {
        Paint,  ///< as the drawing paints them
        Nearest ///< each starts as near as can be to where the one before it ends
    };
    enum class Closed {
        Keep, ///< what is only filled is closed, what is stroked stays as it is drawn
        All,
        None
    };

    Take take = Take::Both;
    Order order = Order::Paint;
    Closed closed = Closed::Keep;
    /// Outlines below this size are left out; percent of the page's longer side, 0 to 100.
    double smallest = 0.2;
    /// Rectangles as large as the page are kept.
    bool pageRectangles = true;
    /// How far, in pixels, outlines may be moved to have fewer points; 0 leaves them alone.
    double simplify = 0.0;
    /// The time that a drawing may take; 0.1 to 3600.
    double seconds = 10.0;

    friend bool operator==(const ImportOptions&, const ImportOptions&) = default;
};

} // namespace orbel
