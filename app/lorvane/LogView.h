#pragma once

#include <filesystem>
#include <optional>

#include <QWidget>

#include "LogTail.h"

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace lorvane::desktop {

// The log of a work folder: read-only, in the fixed-pitch font, so that the report's columns
// stand. It follows the end of the file while the module appends to it, unless the user has
// scrolled up to read; text can be found and the selection copied.
class LogView : public QWidget {
    Q_OBJECT
public:
    explicit LogView(QWidget* parent = nullptr);

    // Shows the file from its start and follows it from now on.
    void follow(const std::filesystem::path& file);
    // Takes up what was appended since.
    void catchUp();

    // Selects the next place of the text (or the previous one), round the end of the log;
    // false when there is none.
    bool find(const QString& text, bool backwards = false);
    void focusFind();

    QPlainTextEdit* text() const { return text_; }
    QLineEdit* findText() const { return findText_; }
    QPushButton* copyButton() const { return copy_; }

private:
    bool atEnd() const;
    void scrollToEnd();
    void append(const QString& text);

    QPlainTextEdit* text_;
    QLineEdit* findText_;
    QPushButton* next_;
    QPushButton* previous_;
    QPushButton* copy_;
    QLabel* findState_;
    std::optional<LogTail> tail_;
};

} // namespace lorvane::desktop
