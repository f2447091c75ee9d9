#include "StartPage.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "Style.h"

namespace lorvane::desktop {

StartPage::StartPage(QWidget* parent)
    : QWidget(parent), openData_(new QPushButton(tr("Open a CSV file..."), this)),
      openFolder_(new QPushButton(tr("Open a work folder..."), this)) {
    auto* title = new QLabel(tr("Lorvane VAR"), this);
    title->setFont(gui::SansFont(gui::TextPoints * 2, true));
    auto* text = new QLabel(
        tr("Vector autoregression analysis of your time series.\n\n"
           "Open the CSV file of your data: Lorvane shows how it reads the file, imports it into "
           "a work folder of your choice and starts the VAR module there. The module keeps its "
           "log of results and its pictures in the work folder; when it ends, Lorvane shows "
           "them.\n\n"
           "Or open the work folder of an earlier analysis.\n\n"
           "A CSV file or a work folder may also be dropped on this window."),
        this);
    text->setWordWrap(true);
    openData_->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(openData_);
    buttons->addWidget(openFolder_);
    buttons->addStretch();

    auto* column = new QVBoxLayout;
    column->addWidget(title);
    column->addSpacing(gui::Margin);
    column->addWidget(text);
    column->addSpacing(gui::Margin);
    column->addLayout(buttons);

    auto* layout = new QHBoxLayout(this);
    layout->addStretch(1);
    auto* middle = new QVBoxLayout;
    middle->addStretch(1);
    middle->addLayout(column);
    middle->addStretch(2);
    layout->addLayout(middle, 3);
    layout->addStretch(1);

    connect(openData_, &QPushButton::clicked, this, &StartPage::openDataRequested);
    connect(openFolder_, &QPushButton::clicked, this, &StartPage::openFolderRequested);
}

} // namespace lorvane::desktop
