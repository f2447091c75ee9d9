#pragma once

#include <string>

#include "frame/Int16.h"
#include "frame/Screen.h"

namespace lorvane {

// The programs that take a picture for editing, tried in this order. The packager may set
// them with -DLORVANE_PAINT_FIRST="..." and -DLORVANE_PAINT_SECOND="...".
#if defined(LORVANE_PAINT_FIRST)
inline constexpr const char* FirstPaintProgram = LORVANE_PAINT_FIRST;
#elif defined(_WIN32)
inline constexpr const char* FirstPaintProgram = "PBRUSH.EXE";
#else
inline constexpr const char* FirstPaintProgram = "kolourpaint";
#endif
#if defined(LORVANE_PAINT_SECOND)
inline constexpr const char* SecondPaintProgram = LORVANE_PAINT_SECOND;
#elif defined(_WIN32)
inline constexpr const char* SecondPaintProgram = "MSPAINT.EXE";
#else
inline constexpr const char* SecondPaintProgram = "xdg-open";
#endif

// The small dialog above the plots that tells how to print or edit a picture, and hands the
// picture shown (copied to BITMAP.TMP in the work folder) to the paint program.
class APicPrn : public Screen {
public:
    explicit APicPrn(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;

    // The write test of the data folder: 0 not yet made, 1 writable, -1 not writable. Made
    // once, at the first need, and kept while the dialog lives.
    Int16 WriteTest();

private:
    bool CopyPicture();
    void BuildText(bool copied);
    // Starts the paint program on BITMAP.TMP; true when one of the two started.
    bool StartPaint();

    Int16 writeTest_;
};

} // namespace lorvane
