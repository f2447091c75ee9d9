#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QDialog>
#include <QPointer>

#include "dialogs/WrapText.h"
#include "platform/Dialogs.h"

class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace lorvane {
struct FrameFields;
}

namespace lorvane::gui {

// The look shared by the two boxes: the heading with the shortened title on top, the folded
// text under it, the buttons in a row at the bottom. Everything grows with scale.
class BoxDialog : public QDialog {
    Q_OBJECT
public:
    BoxDialog(const std::string& title, const std::string& shownTitle, const std::string& shownText,
              double scale, QWidget* parent);

protected:
    QPushButton* addButton(const std::string& caption);
    QVBoxLayout* body() const { return body_; }
    double scale() const { return scale_; }

private:
    double scale_;
    QVBoxLayout* body_;
    QHBoxLayout* buttons_;
};

// A message box: the caption of the pressed button is its answer. The buttons take the focus in
// the order of the set, the first one first.
class MessageDialog : public BoxDialog {
    Q_OBJECT
public:
    MessageDialog(const MessageBoxRequest& request, double scale, QWidget* parent = nullptr);
    const std::string& answer() const { return answer_; }

    // Escape and the window's close button answer "Cancel" when the set has it, and "OK" when
    // OK is the only button; any other set waits for a button.
    void reject() override;

private:
    std::vector<std::string> buttons_;
    std::string answer_;
};

// An input box: the typed text, or nothing when cancelled.
class InputDialog : public BoxDialog {
    Q_OBJECT
public:
    InputDialog(const InputBoxRequest& request, double scale, QWidget* parent = nullptr);
    std::optional<std::string> answer() const;

private:
    QLineEdit* text_;
};

// How much the boxes grow over a frame with these fields: only in full size.
double BoxScale(const FrameFields* fields);

// The dialog of either box, unshown.
std::unique_ptr<BoxDialog> MakeBoxDialog(const BoxRequest& request, double scale, QWidget* parent);

// The module's boxes as modal dialogs over the frame, each running its own event loop while it
// waits, so the frame's tick and the repaints go on.
class QtDialogs : public Dialogs {
public:
    // The boxes are centred over frame; fields tell whether the frame is in full size and by
    // how much the boxes grow then.
    void attach(QWidget* frame, const FrameFields* fields);
    // Runs before a box is shown: the frame brings itself up to date first.
    void setBeforeShow(std::function<void()> beforeShow) { beforeShow_ = std::move(beforeShow); }

    std::string showMessage(const MessageBoxRequest& request) override;
    std::optional<std::string> showInput(const InputBoxRequest& request) override;

    // The width of texts in average characters of the box font, for folding.
    static TextMeasure measure();

private:
    void prepare();

    QPointer<QWidget> frame_;
    const FrameFields* fields_ = nullptr;
    std::function<void()> beforeShow_;
};

} // namespace lorvane::gui
