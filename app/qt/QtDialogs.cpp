#include "QtDialogs.h"

#include <algorithm>

#include <QApplication>
#include <QFontMetricsF>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "Style.h"
#include "frame/FrameFields.h"

namespace lorvane::gui {

namespace {

// A box is never narrower than this, in pixels at scale 1.
constexpr int BoxMinimumWidth = 320;
constexpr int ButtonMinimumWidth = 88;

int Scaled(int pixels, double scale) {
    return static_cast<int>(pixels * scale + 0.5);
}

} // namespace

BoxDialog::BoxDialog(const std::string& title, const std::string& shownTitle,
                     const std::string& shownText, double scale, QWidget* parent)
    : QDialog(parent), scale_(scale) {
    setWindowTitle(ToQt(title));
    setModal(true);
    setFont(SansFont(TextPoints * scale));

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, Scaled(Margin, scale));
    outer->setSpacing(Scaled(Margin, scale));

    auto* heading = new QLabel(ToQt(shownTitle), this);
    heading->setObjectName(QStringLiteral("Label1"));
    heading->setTextFormat(Qt::PlainText);
    StyleHeading(heading);
    heading->setMinimumHeight(QFontMetricsF(heading->font()).height() * 1.6);
    outer->addWidget(heading);

    body_ = new QVBoxLayout;
    body_->setContentsMargins(Scaled(Margin, scale), 0, Scaled(Margin, scale), 0);
    body_->setSpacing(Scaled(Spacing, scale));
    outer->addLayout(body_);

    auto* text = new QLabel(Shown(shownText), this);
    text->setObjectName(QStringLiteral("Label2"));
    text->setTextFormat(Qt::PlainText);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // A box without text shows its title alone.
    text->setVisible(!shownText.empty());
    body_->addWidget(text);

    buttons_ = new QHBoxLayout;
    buttons_->setContentsMargins(Scaled(Margin, scale), 0, Scaled(Margin, scale), 0);
    buttons_->setSpacing(Scaled(Spacing, scale));
    buttons_->addStretch();
    outer->addLayout(buttons_);

    setMinimumWidth(Scaled(BoxMinimumWidth, scale));
}

QPushButton* BoxDialog::addButton(const std::string& caption) {
    auto* button = new QPushButton(ToQt(caption), this);
    button->setObjectName(ToQt(caption + "Button"));
    button->setMinimumWidth(Scaled(ButtonMinimumWidth, scale_));
    // Spread under the text: a stretch on either side of every button.
    buttons_->addWidget(button);
    buttons_->addStretch();
    return button;
}

MessageDialog::MessageDialog(const MessageBoxRequest& request, double scale, QWidget* parent)
    : BoxDialog(request.title, request.shownTitle, request.shownText, scale, parent),
      buttons_(request.buttons) {
    if (buttons_.empty()) {
        buttons_.emplace_back("OK");
    }
    const std::size_t chosen = request.defaultButton < buttons_.size() ? request.defaultButton : 0;
    QWidget* previous = nullptr;
    for (std::size_t b = 0; b < buttons_.size(); ++b) {
        const std::string& caption = buttons_[b];
        QPushButton* button = addButton(caption);
        connect(button, &QPushButton::clicked, this, [this, caption] {
            answer_ = caption;
            accept();
        });
        if (previous != nullptr) {
            setTabOrder(previous, button);
        }
        if (b == chosen) {
            button->setDefault(true);
            button->setFocus();
        }
        previous = button;
    }
}

void MessageDialog::reject() {
    const bool hasCancel = std::find(buttons_.begin(), buttons_.end(), "Cancel") != buttons_.end();
    if (hasCancel) {
        answer_ = "Cancel";
    } else if (buttons_.size() == 1 && buttons_.front() == "OK") {
        answer_ = "OK";
    } else {
        return;
    }
    QDialog::reject();
}

InputDialog::InputDialog(const InputBoxRequest& request, double scale, QWidget* parent)
    : BoxDialog(request.title, request.shownTitle, request.shownPrompt, scale, parent) {
    text_ = new QLineEdit(ToQt(request.defaultText), this);
    text_->setObjectName(QStringLiteral("Text1"));
    text_->setFont(FixedFont(TextPoints * scale));
    text_->selectAll();
    body()->addWidget(text_);

    QPushButton* ok = addButton("OK");
    QPushButton* cancel = addButton("Cancel");
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    setTabOrder(text_, ok);
    setTabOrder(ok, cancel);
    text_->setFocus();
}

std::optional<std::string> InputDialog::answer() const {
    if (result() != QDialog::Accepted) {
        return std::nullopt;
    }
    return FromQt(text_->text());
}

void QtDialogs::attach(QWidget* frame, const FrameFields* fields) {
    frame_ = frame;
    fields_ = fields;
}

double BoxScale(const FrameFields* fields) {
    if (fields == nullptr || fields->FullSize != 1) {
        return 1;
    }
    return std::max(1.0, fields->ScreenScale);
}

std::unique_ptr<BoxDialog> MakeBoxDialog(const BoxRequest& request, double scale, QWidget* parent) {
    if (const auto* message = std::get_if<MessageBoxRequest>(&request)) {
        return std::make_unique<MessageDialog>(*message, scale, parent);
    }
    return std::make_unique<InputDialog>(std::get<InputBoxRequest>(request), scale, parent);
}

void QtDialogs::prepare() {
    if (beforeShow_) {
        beforeShow_();
    }
}

std::string QtDialogs::showMessage(const MessageBoxRequest& request) {
    prepare();
    QWidget* parent = frame_ && frame_->isVisible() ? frame_.data() : nullptr;
    MessageDialog box(request, BoxScale(fields_), parent);
    box.exec();
    return box.answer();
}

std::optional<std::string> QtDialogs::showInput(const InputBoxRequest& request) {
    prepare();
    QWidget* parent = frame_ && frame_->isVisible() ? frame_.data() : nullptr;
    InputDialog box(request, BoxScale(fields_), parent);
    box.exec();
    return box.answer();
}

TextMeasure QtDialogs::measure() {
    return [](std::string_view text) {
        const QFontMetricsF metrics(SansFont(TextPoints));
        return metrics.horizontalAdvance(ToQt(text)) / metrics.averageCharWidth();
    };
}

} // namespace lorvane::gui
