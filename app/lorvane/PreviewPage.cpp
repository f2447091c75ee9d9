#include "PreviewPage.h"

#include <algorithm>

#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "Style.h"

namespace lorvane::desktop {

namespace {

QString Text(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

PreviewPage::PreviewPage(QWidget* parent)
    : QWidget(parent), title_(new QLabel(this)), calendar_(new QLabel(this)),
      missing_(new QLabel(this)), problem_(new QLabel(this)), table_(new QTableWidget(this)),
      folder_(new QLineEdit(this)), browse_(new QPushButton(tr("Choose..."), this)),
      back_(new QPushButton(tr("Back"), this)),
      import_(new QPushButton(tr("Import and start VAR"), this)) {
    title_->setFont(gui::SansFont(gui::TextPoints * 1.4, true));
    for (QLabel* label : {calendar_, missing_, problem_}) {
        label->setWordWrap(true);
        label->setTextFormat(Qt::PlainText);
    }
    problem_->setStyleSheet(QStringLiteral("QLabel { color: #b00000; }"));
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionMode(QAbstractItemView::NoSelection);
    table_->setFocusPolicy(Qt::NoFocus);
    table_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    import_->setDefault(true);
    import_->setAutoDefault(true);

    auto* folderRow = new QHBoxLayout;
    auto* folderLabel = new QLabel(tr("&Work folder:"), this);
    folderLabel->setBuddy(folder_);
    folderRow->addWidget(folderLabel);
    folderRow->addWidget(folder_, 1);
    folderRow->addWidget(browse_);
    auto* folderNote =
        new QLabel(tr("The data files go to LORVANE.DAT in the work folder; the module keeps its "
                      "log and its pictures there as well."),
                   this);
    folderNote->setWordWrap(true);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(back_);
    buttons->addWidget(import_);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title_);
    layout->addWidget(calendar_);
    layout->addWidget(missing_);
    layout->addWidget(problem_);
    layout->addWidget(table_, 1);
    layout->addLayout(folderRow);
    layout->addWidget(folderNote);
    layout->addLayout(buttons);

    connect(browse_, &QPushButton::clicked, this, &PreviewPage::chooseFolder);
    connect(back_, &QPushButton::clicked, this, &PreviewPage::backRequested);
    connect(import_, &QPushButton::clicked, this, &PreviewPage::importRequested);
    connect(folder_, &QLineEdit::returnPressed, import_, &QPushButton::click);
}

void PreviewPage::showPreview(DataPreview preview, const QString& workFolder) {
    preview_ = std::move(preview);
    title_->setText(Text(preview_.File.filename().string()));
    title_->setToolTip(QDir::toNativeSeparators(Text(preview_.File.string())));
    const bool importable = preview_.Importable();
    calendar_->setText(importable ? Text(CalendarText(preview_.Data)) : QString());
    missing_->setText(importable ? Text(MissingText(preview_.Data)) : QString());
    problem_->setText(importable
                          ? QString()
                          : tr("This file cannot be imported: %1").arg(Text(preview_.Problem)));
    calendar_->setVisible(importable);
    missing_->setVisible(importable);
    problem_->setVisible(!importable);
    folder_->setText(QDir::toNativeSeparators(workFolder));
    import_->setEnabled(importable);
    fillTable();
}

QString PreviewPage::workFolder() const {
    const QString text = folder_->text().trimmed();
    return text.isEmpty() ? QString() : QDir::cleanPath(QDir::fromNativeSeparators(text));
}

void PreviewPage::fillTable() {
    table_->clear();
    const ImportedData& data = preview_.Data;
    if (!preview_.Importable()) {
        table_->setRowCount(0);
        table_->setColumnCount(0);
        return;
    }
    const int rows = std::min(ShownRows, data.ObsCount());
    table_->setRowCount(rows);
    table_->setColumnCount(data.VarCount());
    QStringList names;
    for (const std::string& name : data.Names) {
        names << Text(name);
    }
    table_->setHorizontalHeaderLabels(names);
    QStringList labels;
    for (int t = 1; t <= rows; ++t) {
        labels << Text(ObservationLabel(data, t));
    }
    table_->setVerticalHeaderLabels(labels);
    for (int j = 0; j < data.VarCount(); ++j) {
        const std::vector<double>& column = data.Columns[static_cast<std::size_t>(j)];
        for (int t = 0; t < rows; ++t) {
            const double value = column[static_cast<std::size_t>(t)];
            auto* cell = new QTableWidgetItem;
            if (value == data.MissingCode) {
                cell->setText(tr("missing"));
                cell->setForeground(palette().placeholderText());
                QFont font = cell->font();
                font.setItalic(true);
                cell->setFont(font);
            } else {
                cell->setText(QString::number(value, 'g', 8));
            }
            cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            table_->setItem(t, j, cell);
        }
    }
}

void PreviewPage::chooseFolder() {
    const QString chosen =
        QFileDialog::getExistingDirectory(this, tr("Choose the work folder"), workFolder());
    if (!chosen.isEmpty()) {
        folder_->setText(QDir::toNativeSeparators(chosen));
    }
}

} // namespace lorvane::desktop
