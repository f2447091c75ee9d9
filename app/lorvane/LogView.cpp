#include "LogView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextCursor>
#include <QVBoxLayout>

#include "Style.h"

namespace lorvane::desktop {

LogView::LogView(QWidget* parent)
    : QWidget(parent), text_(new QPlainTextEdit(this)), findText_(new QLineEdit(this)),
      next_(new QPushButton(tr("Find next"), this)),
      previous_(new QPushButton(tr("Find previous"), this)),
      copy_(new QPushButton(tr("Copy"), this)), findState_(new QLabel(this)) {
    text_->setReadOnly(true);
    text_->setLineWrapMode(QPlainTextEdit::NoWrap);
    text_->setFont(gui::FixedFont(gui::TextPoints));
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text_->setObjectName(QStringLiteral("log"));
    findText_->setPlaceholderText(tr("Find in the log"));
    findText_->setClearButtonEnabled(true);
    copy_->setEnabled(false);
    copy_->setToolTip(tr("Copy the selected text"));

    auto* tools = new QHBoxLayout;
    tools->addWidget(findText_, 1);
    tools->addWidget(next_);
    tools->addWidget(previous_);
    tools->addWidget(findState_);
    tools->addStretch();
    tools->addWidget(copy_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(tools);
    layout->addWidget(text_, 1);

    connect(findText_, &QLineEdit::returnPressed, this, [this] { find(findText_->text()); });
    connect(findText_, &QLineEdit::textChanged, findState_, &QLabel::clear);
    connect(next_, &QPushButton::clicked, this, [this] { find(findText_->text()); });
    connect(previous_, &QPushButton::clicked, this, [this] { find(findText_->text(), true); });
    connect(text_, &QPlainTextEdit::copyAvailable, copy_, &QPushButton::setEnabled);
    connect(copy_, &QPushButton::clicked, text_, &QPlainTextEdit::copy);
}

void LogView::follow(const std::filesystem::path& file) {
    text_->clear();
    tail_.emplace(file);
    catchUp();
    scrollToEnd();
}

void LogView::catchUp() {
    if (!tail_) {
        return;
    }
    const LogTail::News news = tail_->ReadNew();
    if (news.Restarted) {
        text_->clear();
    }
    if (!news.Text.empty()) {
        append(QString::fromUtf8(news.Text.data(), static_cast<qsizetype>(news.Text.size())));
    }
}

void LogView::append(const QString& text) {
    const bool following = atEnd();
    const int scrolled = text_->verticalScrollBar()->value();
    QTextCursor end(text_->document());
    end.movePosition(QTextCursor::End);
    end.insertText(text);
    if (following) {
        scrollToEnd();
    } else {
        text_->verticalScrollBar()->setValue(scrolled);
    }
}

bool LogView::atEnd() const {
    const QScrollBar* bar = text_->verticalScrollBar();
    return bar->value() >= bar->maximum();
}

void LogView::scrollToEnd() {
    text_->verticalScrollBar()->setValue(text_->verticalScrollBar()->maximum());
}

bool LogView::find(const QString& text, bool backwards) {
    if (text.isEmpty()) {
        findState_->clear();
        return false;
    }
    const QTextDocument::FindFlags flags =
        backwards ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    bool found = text_->find(text, flags);
    if (!found) {
        // Round the end of the log to the other end.
        const QTextCursor before = text_->textCursor();
        QTextCursor cursor = before;
        cursor.movePosition(backwards ? QTextCursor::End : QTextCursor::Start);
        text_->setTextCursor(cursor);
        found = text_->find(text, flags);
        if (!found) {
            text_->setTextCursor(before);
        }
    }
    findState_->setText(found ? QString() : tr("Not found"));
    return found;
}

void LogView::focusFind() {
    findText_->setFocus(Qt::ShortcutFocusReason);
    findText_->selectAll();
}

} // namespace lorvane::desktop
