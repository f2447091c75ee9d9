#include "platform/RecordingSurface.h"

#include <fstream>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

namespace lorvane {

namespace {

std::string Hex(Colour colour) {
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%06X", static_cast<unsigned>(colour & 0xFFFFFF));
    return buffer;
}

} // namespace

RecordingSurface::RecordingSurface(int widthPixels, int heightPixels)
    : ScaledSurface(widthPixels, heightPixels) {}

void RecordingSurface::Record(std::string kind, std::vector<double> values, Colour colour,
                              std::string text) {
    operations_.push_back(
        {std::move(kind), std::move(values), std::move(text), colour, DrawWidth(), Style()});
}

void RecordingSurface::setScale(double left, double top, double right, double bottom) {
    if (ChangeScale(left, top, right, bottom)) {
        Record("scale", {left, top, right, bottom}, 0);
    }
}

void RecordingSurface::clear(Colour background) {
    Record("clear", {}, background);
}

void RecordingSurface::line(double x1, double y1, double x2, double y2, Colour colour) {
    Record("line", {x1, y1, x2, y2}, colour);
}

void RecordingSurface::box(double x1, double y1, double x2, double y2, Colour colour) {
    Record("box", {x1, y1, x2, y2}, colour);
}

void RecordingSurface::dot(double x, double y, Colour colour) {
    Record("dot", {x, y}, colour);
}

double RecordingSurface::textWidth(const std::string& text) const {
    return Scale().UnitsAcross(static_cast<double>(text.size()) * CharacterPixels);
}

double RecordingSurface::textHeight(const std::string& /*text*/) const {
    return Scale().UnitsDown(LinePixels);
}

void RecordingSurface::text(double x, double y, const std::string& text, Colour colour) {
    Record("text", {x, y}, colour, text);
}

bool RecordingSurface::saveBitmap(const std::filesystem::path& file) const {
    operations_.push_back({"save", {}, file.string(), 0, DrawWidth(), Style()});
    const std::string picture = Text();
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(picture.data(),
              static_cast<std::streamsize>(saveSucceeds_ ? picture.size() : picture.size() / 2));
    out.close();
    return saveSucceeds_ && out.good();
}

std::vector<RecordingSurface::Operation>
RecordingSurface::OperationsOf(const std::string& kind) const {
    std::vector<Operation> found;
    std::copy_if(operations_.begin(), operations_.end(), std::back_inserter(found),
                 [&kind](const Operation& operation) { return operation.kind == kind; });
    return found;
}

std::string RecordingSurface::Text() const {
    std::ostringstream out;
    for (const Operation& operation : operations_) {
        out << operation.kind;
        for (const double value : operation.values) {
            out << ' ' << value;
        }
        if (operation.kind != "save" && operation.kind != "scale") {
            out << ' ' << Hex(operation.colour);
        }
        if (operation.width != 1) {
            out << " w" << operation.width;
        }
        if (operation.style == DrawStyle::Dash) {
            out << " dash";
        } else if (operation.style == DrawStyle::Dot) {
            out << " dotted";
        }
        if (!operation.text.empty()) {
            out << " \"" << operation.text << '"';
        }
        out << '\n';
    }
    return out.str();
}

std::unique_ptr<Surface> RecordingSurfaceFactory::create(int widthPixels, int heightPixels) {
    return std::make_unique<RecordingSurface>(widthPixels, heightPixels);
}

} // namespace lorvane
