#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace lorvane {

// 0xRRGGBB
using Colour = std::uint32_t;

enum class DrawStyle { Solid, Dash, Dot };

// The drawing surface of a picture, in its own logical units (the scale the picture sets up).
class Surface {
public:
    virtual ~Surface() = default;
    virtual void setScale(double left, double top, double right, double bottom) = 0;
    virtual void setDrawWidth(double width) = 0;
    virtual void setDrawStyle(DrawStyle style) = 0;
    virtual void clear(Colour background) = 0;
    virtual void line(double x1, double y1, double x2, double y2, Colour colour) = 0;
    virtual void box(double x1, double y1, double x2, double y2, Colour colour) = 0;
    virtual void dot(double x, double y, Colour colour) = 0;
    virtual double textWidth(const std::string& text) const = 0;
    virtual double textHeight(const std::string& text) const = 0;
    virtual void text(double x, double y, const std::string& text, Colour colour) = 0;
    // Writes the picture as a device-independent bitmap; false on failure.
    virtual bool saveBitmap(const std::filesystem::path& file) const = 0;
};

class SurfaceFactory {
public:
    virtual ~SurfaceFactory() = default;
    // A surface of the given size in pixels.
    virtual std::unique_ptr<Surface> create(int widthPixels, int heightPixels) = 0;
};

} // namespace lorvane
