#include "shapes/PathRenderer.h"

namespace orbel {

namespace {

/// Numbers that a command takes, by its upper-case letter; an arc's are skipped one by one, so it
/// takes none. -1 for what is no command.
int argumentCount(char command) {
    switch (command) {
    case 'Z':
    case 'A':
        return 0;
    case 'H':
    case 'V':
        return 1;
    case 'M':
    case 'L':
    case 'T':
        return 2;
    case 'S':
    case 'Q':
        return 4;
    case 'C':
        return 6;
    default:
        return -1;
    }
}

} // namespace

void path_renderer::setPath(PluginPath_Impl* target) {
    m_target = target;
    m_parts = 0;
}

void path_renderer::begin_path() {
    push_attr();
    remove_all();
}

void path_renderer::end_path() {
    auto& vertices = m_outline.vertices;
    if (vertices.size() == 1) {
        Vx_PathVertex& only = vertices.front();
        const Point end{only.tanOutX, only.tanOutY};
        only.tanOutX = only.tanInX;
        only.tanOutY = only.tanInY;
        append(end, end, end);
    }
    if (m_lastWasCurve) {
        append(m_lastControl, m_current, m_current);
        m_lastWasCurve = false;
    }
    if (m_target != nullptr && takePart()) {
        m_target->addOutline(m_outline);
    }
    pop_attr();
}

void path_renderer::move_to(double x, double y, bool relative) {
    m_current = absolute({x, y}, relative);
}

void path_renderer::line_to(double x, double y, bool relative) {
    const Point end = absolute({x, y}, relative);
    append(m_current, m_current, end);
    m_current = end;
}

void path_renderer::hline_to(double x, bool relative) {
    line_to(x, relative ? 0.0 : m_current.y, relative);
}

void path_renderer::vline_to(double y, bool relative) {
    line_to(relative ? 0.0 : m_current.x, y, relative);
}

void path_renderer::curve3(double controlX, double controlY, double x, double y, bool relative) {
    const Point control = absolute({controlX, controlY}, relative);
    const Point end = absolute({x, y}, relative);
    // The control point stands in the anchor's place: this is meant.
    append(m_current, control, end);
    m_current = end;
}

void path_renderer::curve3(double x, double y, bool relative) {
    Point lastOut = m_current;
    if (!m_outline.vertices.empty()) {
        const Vx_PathVertex& last = m_outline.vertices.back();
        lastOut = {last.tanOutX, last.tanOutY};
    }
    const Point control = mirrored(lastOut, relative);
    curve3(control.x, control.y, x, y, relative);
}

void path_renderer::curve4(double control1X, double control1Y, double control2X, double control2Y,
                           double x, double y, bool relative) {
    const Point control1 = absolute({control1X, control1Y}, relative);
    const Point control2 = absolute({control2X, control2Y}, relative);
    const Point end = absolute({x, y}, relative);
    // After a line the last control point is stale: this is meant.
    append(m_outline.vertices.empty() ? m_current : m_lastControl, m_current, control1);
    m_lastWasCurve = true;
    m_current = end;
    m_lastControl = control2;
}

void path_renderer::curve4(double control2X, double control2Y, double x, double y, bool relative) {
    const Point control1 = mirrored(m_lastControl, relative);
    curve4(control1.x, control1.y, control2X, control2Y, x, y, relative);
}

void path_renderer::close_subpath(bool addVertex) {
    m_outline.isOpen = false;
    if (addVertex && !m_outline.vertices.empty()) {
        const Vx_PathVertex& first = m_outline.vertices.front();
        append(m_current, m_current, {first.tanInX, first.tanInY});
    }
}

void path_renderer::remove_all() {
    m_outline.vertices.clear();
    m_outline.isOpen = true;
    m_current = {0.0, 0.0};
    m_lastControl = {0.0, 0.0};
    m_lastWasCurve = false;
    m_lines = 0;
    m_cubics = 0;
    m_quadratics = 0;
    m_report->beginOutline();
}

void path_renderer::parse_path(path_tokenizer& tokenizer) {
    while (tokenizer.next()) {
        const char letter = tokenizer.last_command();
        const bool relative = letter >= 'a';
        const char command = static_cast<char>(relative ? letter - 'a' + 'A' : letter);
        const int count = argumentCount(command);
        if (count < 0) {
            m_report->add(SvgIssue::InvalidCommand, letter);
            break;
        }
        reportOddities(command, tokenizer.commandRead());
        std::array<double, 6> arguments{tokenizer.last_number()};
        for (std::size_t i = 1; i < static_cast<std::size_t>(count); ++i) {
            arguments[i] = tokenizer.next(letter);
        }
        draw(command, relative, arguments);
    }
    reportForm();
}

void path_renderer::draw(char command, bool relative, const std::array<double, 6>& arguments) {
    const auto& [a, b, c, d, e, f] = arguments;
    switch (command) {
    case 'M':
        return move_to(a, b, relative);
    case 'L':
        return line_to(a, b, relative);
    case 'H':
        return hline_to(a, relative);
    case 'V':
        return vline_to(a, relative);
    case 'C':
        return curve4(a, b, c, d, e, f, relative);
    case 'S':
        return curve4(a, b, c, d, relative);
    case 'Q':
        return curve3(a, b, c, d, relative);
    case 'T':
        return curve3(a, b, relative);
    case 'Z':
        return close_subpath(false);
    default:
        return; // an arc
    }
}

path_renderer::Point path_renderer::absolute(Point point, bool relative) const {
    return relative ? Point{point.x + m_current.x, point.y + m_current.y} : point;
}

/// `control` mirrored about the current point, in the coordinates that a command of this form
/// takes.
path_renderer::Point path_renderer::mirrored(Point control, bool relative) const {
    if (m_outline.vertices.empty()) {
        return relative ? Point{0.0, 0.0} : m_current;
    }
    const Point point{2.0 * m_current.x - control.x, 2.0 * m_current.y - control.y};
    return relative ? Point{point.x - m_current.x, point.y - m_current.y} : point;
}

bool path_renderer::takePart() {
    m_parts += m_parts <= maxParts ? 1 : 0;
    return !overfull();
}

void path_renderer::append(Point in, Point anchor, Point out) {
    if (takePart()) {
        m_outline.vertices.push_back({in.x, in.y, anchor.x, anchor.y, out.x, out.y});
    }
}

void path_renderer::reportOddities(char command, bool commandRead) {
    if (!m_report->wanted()) {
        return;
    }
    if (command == 'A') {
        m_report->add(SvgIssue::Arc, command);
    }
    if (command == 'M' && !commandRead) {
        m_report->add(SvgIssue::RepeatedMove, command);
    }
    countSegment(command);
    const bool secondMove = command == 'M' && !m_outline.vertices.empty();
    if (secondMove || (!m_outline.isOpen && command != 'Z')) {
        m_report->add(SvgIssue::SeveralSubpaths, secondMove ? 'M' : 'Z');
    }
}

void path_renderer::countSegment(char command) {
    switch (command) {
    case 'L':
    case 'H':
    case 'V':
        ++m_lines;
        break;
    case 'C':
    case 'S':
        ++m_cubics;
        break;
    case 'Q':
    case 'T':
        ++m_quadratics;
        m_report->add(SvgIssue::Quadratic, command);
        break;
    default:
        break;
    }
}

void path_renderer::reportForm() {
    if (!m_report->wanted() || m_quadratics > 0) {
        return;
    }
    if (m_lines > 0 && m_cubics > 0) {
        m_report->add(SvgIssue::MixedCommands);
    } else if (m_cubics == 1) {
        m_report->add(SvgIssue::LoneCubic);
    } else if (m_lines > 1) {
        m_report->add(m_outline.isOpen ? SvgIssue::LastLineLost : SvgIssue::BentClosing);
    }
}

} // namespace orbel
