#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/ScaledSurface.h"

namespace lorvane {

// A surface without pixels: it records every drawing operation, with the draw width and style
// in force, so that tests can read what a picture draws. Text is measured as if every character
// were 6 pixels wide and a line 13 pixels high. saveBitmap records the call and writes the record
// of the drawing as the file, and reports success; told to fail, it writes only the first half
// of the record, as a full disk would leave a picture, and reports failure.
class RecordingSurface : public ScaledSurface {
public:
    static constexpr double CharacterPixels = 6;
    static constexpr double LinePixels = 13;

    struct Operation {
        // "scale", "clear", "line", "box", "dot", "text" or "save".
        std::string kind;
        std::vector<double> values;
        // The text drawn, or the file named by a save.
        std::string text;
        Colour colour = 0;
        double width = 1;
        DrawStyle style = DrawStyle::Solid;
    };

    RecordingSurface(int widthPixels, int heightPixels);

    void setScale(double left, double top, double right, double bottom) override;
    void clear(Colour background) override;
    void line(double x1, double y1, double x2, double y2, Colour colour) override;
    void box(double x1, double y1, double x2, double y2, Colour colour) override;
    void dot(double x, double y, Colour colour) override;
    double textWidth(const std::string& text) const override;
    double textHeight(const std::string& text) const override;
    void text(double x, double y, const std::string& text, Colour colour) override;
    bool saveBitmap(const std::filesystem::path& file) const override;

    int WidthPixels() const { return Scale().widthPixels; }
    int HeightPixels() const { return Scale().heightPixels; }
    const std::vector<Operation>& Operations() const { return operations_; }
    // The operations of one kind, in order.
    std::vector<Operation> OperationsOf(const std::string& kind) const;
    // One line per operation: the kind, its numbers, its colour as RRGGBB, then any text in
    // double quotes, e.g. `line 0.1 0.5 0.2 0.4 1F4FBF w1.5` or `text 0.01 0 "0" 000000`.
    std::string Text() const;
    // Forgets what was drawn.
    void Forget() { operations_.clear(); }
    // What saveBitmap reports from now on.
    void SetSaveResult(bool succeeds) { saveSucceeds_ = succeeds; }

private:
    void Record(std::string kind, std::vector<double> values, Colour colour, std::string text = {});

    bool saveSucceeds_ = true;
    // saveBitmap is const, as on every surface; the record of the call is not the picture.
    mutable std::vector<Operation> operations_;
};

class RecordingSurfaceFactory : public SurfaceFactory {
public:
    std::unique_ptr<Surface> create(int widthPixels, int heightPixels) override;
};

} // namespace lorvane
