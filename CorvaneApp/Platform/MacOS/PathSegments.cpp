#include "Platform/MacOS/PathSegments.h"

namespace corvane {

std::vector<PathSegment> pathSegments(const QPainterPath& path) {
    std::vector<PathSegment> segments;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        switch (element.type) {
        case QPainterPath::MoveToElement:
            segments.push_back({PathSegment::Kind::move, element, {}, {}});
            break;
        case QPainterPath::LineToElement:
            segments.push_back({PathSegment::Kind::line, element, {}, {}});
            break;
        case QPainterPath::CurveToElement:
            // A curve's two further points follow as separate elements.
            segments.push_back(
                {PathSegment::Kind::curve, path.elementAt(i + 2), element, path.elementAt(i + 1)});
            i += 2;
            break;
        case QPainterPath::CurveToDataElement:
            break;
        }
    }
    return segments;
}

} // namespace corvane
