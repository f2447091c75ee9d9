#include "ScreenView.h"

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QCheckBox>
#include <QFontMetricsF>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTextCursor>
#include <QTimer>

#include "Style.h"
#include "frame/Module.h"
#include "frame/Screen.h"

namespace lorvane::gui {

namespace {

QRect Placed(double left, double top, double width, double height, double pixelsPerTwip) {
    const auto px = [pixelsPerTwip](double twips) {
        return static_cast<int>(std::lround(twips * pixelsPerTwip));
    };
    return {px(left), px(top), std::max(px(width), 1), std::max(px(height), 1)};
}

// Point sizes are designed for 15 twips to a pixel; a frame scaled up or down scales them too.
double Points(const Control& control, double pixelsPerTwip) {
    return control.FontSize * pixelsPerTwip * TwipsPerPixel;
}

// The size at which a button's caption fits the room, with its font's own width steps: a
// caption too wide for its button is set smaller.
double FittedPoints(const Control& button, double points, bool bold, double room) {
    const QString caption = ToQt(button.Caption);
    for (int step = 0; step < 4 && room > 0; ++step) {
        const double wide =
            QFontMetricsF(FontOf(button.Font, points, bold)).horizontalAdvance(caption);
        if (wide <= room) {
            break;
        }
        points *= room / wide * (step == 0 ? 1 : 0.98);
    }
    return points;
}

// A list ends below its last whole row: its height drops to the rows that fit, so that no row
// is cut in half at the bottom edge.
void ShowWholeRows(QListWidget* list) {
    const int row = list->count() > 0 ? list->sizeHintForRow(0) : 0;
    const int frame = 2 * list->frameWidth();
    const int rows = row > 0 ? (list->height() - frame) / row : 0;
    if (rows >= 1) {
        list->resize(list->width(), rows * row + frame);
    }
}

void SetFontIfChanged(QWidget* widget, const QFont& font) {
    if (widget->font() != font) {
        widget->setFont(font);
    }
}

bool Contains(const Control& frame, const Control& inner) {
    return inner.Left >= frame.Left && inner.Top >= frame.Top &&
           inner.Left < frame.Left + frame.Width && inner.Top < frame.Top + frame.Height;
}

// The frame an option button sits in: the one it names, else the smallest one that holds its
// top left corner.
const Control* ContainerOf(const Screen& screen, const Control& option) {
    if (!option.Container.empty()) {
        return const_cast<Screen&>(screen).Find(option.Container);
    }
    const Control* container = nullptr;
    for (const Control& control : screen.Controls()) {
        if (control.Kind == ControlKind::Frame && Contains(control, option) &&
            (container == nullptr ||
             control.Width * control.Height < container->Width * container->Height)) {
            container = &control;
        }
    }
    return container;
}

// A report that grows is followed to its end; any other change of the text keeps the place the
// user scrolled to, as far as the new text reaches.
void ShowText(QPlainTextEdit* text, const QString& shown) {
    const QString old = text->toPlainText();
    if (old == shown) {
        return;
    }
    QScrollBar* down = text->verticalScrollBar();
    QScrollBar* across = text->horizontalScrollBar();
    if (!old.isEmpty() && shown.startsWith(old)) {
        QTextCursor end(text->document());
        end.movePosition(QTextCursor::End);
        end.insertText(shown.mid(old.size()));
        text->setTextCursor(end);
        down->setValue(down->maximum());
        across->setValue(across->minimum());
        return;
    }
    const int top = down->value();
    const int left = across->value();
    text->setPlainText(shown);
    down->setValue(top);
    across->setValue(left);
}

} // namespace

PictureWidget::PictureWidget(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setAutoFillBackground(true);
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, Qt::white);
    setPalette(palette);
}

void PictureWidget::setPicture(const QtSurface* surface, double pixelsPerTwip) {
    pixelsPerTwip_ = pixelsPerTwip;
    if (surface == nullptr) {
        if (!image_.isNull()) {
            image_ = QImage();
            scale_.reset();
            update();
        }
        return;
    }
    // The image is shared, not copied, until the surface draws again.
    if (image_.cacheKey() != surface->shownImage().cacheKey()) {
        image_ = surface->shownImage();
        update();
    }
    scale_ = surface->Scale();
}

QPointF PictureWidget::toLogical(QPointF pixels) const {
    if (!scale_ || image_.isNull()) {
        return pixels / pixelsPerTwip_;
    }
    return {scale_->LogicalX(pixels.x()), scale_->LogicalY(pixels.y())};
}

void PictureWidget::paintEvent(QPaintEvent* /*event*/) {
    if (!image_.isNull()) {
        QPainter painter(this);
        painter.drawImage(QPoint(0, 0), image_);
    }
}

void PictureWidget::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = toLogical(event->position());
    emit moved(at.x(), at.y());
}

void PictureWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) {
        emit clicked();
    }
}

void PictureWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        emit doubleClicked();
    }
}

ScreenView::ScreenView(Module& module, Screen& screen, Dispatch dispatch, QWidget* parent)
    : QFrame(parent), module_(module), screen_(&screen), serial_(screen.Serial()),
      name_(screen.Name()), dispatch_(std::move(dispatch)), hold_(new ClickHold(this)) {
    setObjectName(ToQt(name_));
    setAutoFillBackground(true);
    for (const Control& control : screen.Controls()) {
        build(control);
    }
}

bool ScreenView::Shows(const Screen& screen) const {
    return &screen == screen_ && screen.Serial() == serial_;
}

Screen* ScreenView::live() const {
    Screen* screen = module_.LoadedScreen(name_);
    return screen != nullptr && Shows(*screen) ? screen : nullptr;
}

QObject* ScreenView::controlObject(std::string_view controlName) const {
    const auto found = bindings_.find(controlName);
    if (found == bindings_.end()) {
        return nullptr;
    }
    return found->second.timer ? static_cast<QObject*>(found->second.timer)
                               : found->second.widget.data();
}

void ScreenView::build(const Control& control) {
    const std::string name = control.Name;
    Binding binding{control.Kind, nullptr, nullptr};
    switch (control.Kind) {
    case ControlKind::Label: {
        auto* label = new QLabel(this);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        label->installEventFilter(this);
        binding.widget = label;
        break;
    }
    case ControlKind::Button: {
        auto* button = new QPushButton(this);
        // A button with the focus takes Enter, as on the module's home desktop.
        button->setAutoDefault(true);
        connect(button, &QPushButton::clicked, this, [this, name] { click(name); });
        binding.widget = button;
        break;
    }
    case ControlKind::TextBox:
        if (control.MultiLine) {
            auto* text = new QPlainTextEdit(this);
            text->setLineWrapMode(control.WordWrap ? QPlainTextEdit::WidgetWidth
                                                   : QPlainTextEdit::NoWrap);
            text->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
            text->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
            connect(text, &QPlainTextEdit::textChanged, this, [this, name, text] {
                if (text->isReadOnly()) {
                    return;
                }
                typed(name, Kept(text->toPlainText()));
            });
            binding.widget = text;
        } else {
            auto* text = new QLineEdit(this);
            connect(text, &QLineEdit::textEdited, this,
                    [this, name](const QString& text) { typed(name, FromQt(text)); });
            binding.widget = text;
        }
        break;
    case ControlKind::ListBox: {
        auto* list = new QListWidget(this);
        // Several items: click, Shift+click and Ctrl+click, as the screens tell the user.
        list->setSelectionMode(control.MultiSelect ? QAbstractItemView::ExtendedSelection
                                                   : QAbstractItemView::SingleSelection);
        list->setUniformItemSizes(true);
        connect(list, &QListWidget::itemSelectionChanged, this,
                [this, name] { listSelectionChanged(name); });
        connect(list, &QListWidget::itemDoubleClicked, this,
                [this, name, list](QListWidgetItem* item) {
                    itemDoubleClicked(name, list->row(item));
                });
        binding.widget = list;
        break;
    }
    case ControlKind::CheckBox: {
        auto* check = new QCheckBox(this);
        connect(check, &QCheckBox::clicked, this, [this, name](bool checked) {
            click(name, [checked](Control& c) { c.Value = checked ? 1 : 0; });
        });
        binding.widget = check;
        break;
    }
    case ControlKind::OptionButton: {
        auto* option = new QRadioButton(this);
        // The logic decides which option of a group is on.
        option->setAutoExclusive(false);
        connect(option, &QRadioButton::clicked, this, [this, name] { chooseOption(name); });
        binding.widget = option;
        break;
    }
    case ControlKind::Frame: {
        auto* frame = new QGroupBox(this);
        frame->installEventFilter(this);
        binding.widget = frame;
        break;
    }
    case ControlKind::Picture: {
        auto* picture = new PictureWidget(this);
        connect(picture, &PictureWidget::moved, this, [this, name](double x, double y) {
            act(name, {}, [this, name, x, y] { module_.MouseMove(name_, name, x, y); });
        });
        connect(picture, &PictureWidget::clicked, this, [this, name] { click(name); });
        connect(picture, &PictureWidget::doubleClicked, this, [this, name] {
            act(name, {}, [this, name] { module_.PictureDoubleClick(name_, name); });
        });
        binding.widget = picture;
        break;
    }
    case ControlKind::Timer: {
        auto* timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this,
                [this, name] { act(name, {}, [this, name] { module_.Tick(name_, name); }); });
        binding.timer = timer;
        break;
    }
    }
    if (binding.widget) {
        binding.widget->setObjectName(ToQt(name));
        // Frames lie under the controls placed on them.
        if (control.Kind == ControlKind::Frame) {
            binding.widget->lower();
        }
    }
    if (binding.timer) {
        binding.timer->setObjectName(ToQt(name));
    }
    bindings_.emplace(name, std::move(binding));
}

void ScreenView::refresh(double pixelsPerTwip, const PictureSource& pictures) {
    Screen* screen = live();
    if (screen == nullptr) {
        return;
    }
    pixelsPerTwip_ = pixelsPerTwip;
    setGeometry(Placed(screen->Left, screen->Top, screen->Width, screen->Height, pixelsPerTwip));
    setWindowTitle(ToQt(screen->Caption));
    // A screen smaller than the frame sits above another one: it gets a raised edge.
    const bool fullFrame = screen->Left <= 0 && screen->Top <= 0 &&
                           screen->Width >= module_.FrameClientWidth &&
                           screen->Height >= module_.FrameClientHeight;
    setFrameStyle(fullFrame ? QFrame::NoFrame : (QFrame::Panel | QFrame::Raised));
    setLineWidth(2);

    for (const Control& control : screen->Controls()) {
        auto found = bindings_.find(control.Name);
        if (found == bindings_.end()) {
            build(control);
            found = bindings_.find(control.Name);
        }
        update(found->second, control, pixelsPerTwip, pictures);
    }
    setVisible(screen->Visible);
    if (screen->HoldRequests() != holdRequests_) {
        holdRequests_ = screen->HoldRequests();
        holdClicks();
    }
    orderTabs(*screen);
    followFocus(*screen);
}

void ScreenView::followFocus(const Screen& screen) {
    if (screen.FocusRequests() == focusRequests_) {
        return;
    }
    focusRequests_ = screen.FocusRequests();
    const auto found = bindings_.find(screen.Focus());
    QWidget* widget = found == bindings_.end() ? nullptr : found->second.widget.data();
    if (widget != nullptr && widget->isVisibleTo(this) && widget->isEnabled()) {
        widget->setFocus(Qt::OtherFocusReason);
    }
}

void ScreenView::orderTabs(const Screen& screen) {
    std::vector<const Control*> placed;
    for (const Control& control : screen.Controls()) {
        const auto found = bindings_.find(control.Name);
        if (found != bindings_.end() && found->second.widget &&
            (found->second.widget->focusPolicy() & Qt::TabFocus) != 0) {
            placed.push_back(&control);
        }
    }
    // Controls whose tops differ by less than half a button's height share a row.
    constexpr double SameRow = 210;
    std::stable_sort(placed.begin(), placed.end(), [](const Control* a, const Control* b) {
        if (std::abs(a->Top - b->Top) >= SameRow) {
            return a->Top < b->Top;
        }
        return a->Left < b->Left;
    });
    std::vector<QWidget*> order;
    order.reserve(placed.size());
    for (const Control* control : placed) {
        order.push_back(bindings_.at(control->Name).widget);
    }
    if (order == tabOrder_) {
        return;
    }
    tabOrder_ = order;
    for (std::size_t i = 1; i < order.size(); ++i) {
        setTabOrder(order[i - 1], order[i]);
    }
}

void ScreenView::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool escape = event->key() == Qt::Key_Escape;
    if (event->modifiers() == Qt::NoModifier || event->modifiers() == Qt::KeypadModifier) {
        if ((enter && pressMarked(&Control::Default)) ||
            (escape && pressMarked(&Control::Cancel))) {
            event->accept();
            return;
        }
    }
    QFrame::keyPressEvent(event);
}

bool ScreenView::pressMarked(bool Control::*mark) {
    const Screen* screen = live();
    if (screen == nullptr) {
        return false;
    }
    for (const Control& control : screen->Controls()) {
        if (control.Kind == ControlKind::Button && control.*mark && control.Enabled &&
            screen->IsShown(control)) {
            click(control.Name);
            return true;
        }
    }
    return false;
}

void ScreenView::update(Binding& binding, const Control& control, double pixelsPerTwip,
                        const PictureSource& pictures) {
    if (binding.timer) {
        const bool on = control.Enabled && control.Interval > 0;
        if (!on) {
            binding.timer->stop();
        } else if (!binding.timer->isActive() || binding.timer->interval() != control.Interval) {
            binding.timer->start(control.Interval);
        }
        return;
    }
    QWidget* widget = binding.widget;
    if (widget == nullptr) {
        return;
    }
    const QSignalBlocker blocker(widget);
    widget->setGeometry(
        Placed(control.Left, control.Top, control.Width, control.Height, pixelsPerTwip));
    widget->setEnabled(control.Enabled);
    const bool bold = control.Bold || control.Heading;
    const bool report = control.Kind == ControlKind::TextBox && control.MultiLine &&
                        control.Font == FontFace::Fixed;
    // A frame scaled to the screen scales the box and its font alike: the report's size is the
    // one of the box at design size.
    double points =
        Points(control, pixelsPerTwip) *
        (report ? ReportPoints(control.Width * ControlPoints / control.FontSize) / ControlPoints
                : 1);
    if (control.Kind == ControlKind::Button) {
        points = FittedPoints(control, points, bold,
                              widget->width() - 2 * Spacing * pixelsPerTwip * TwipsPerPixel);
    }
    SetFontIfChanged(widget, FontOf(control.Font, points, bold));

    switch (control.Kind) {
    case ControlKind::Label: {
        auto* label = static_cast<QLabel*>(widget);
        label->setText(Shown(control.Caption));
        if (control.Heading && label->styleSheet().isEmpty()) {
            StyleHeading(label);
        }
        break;
    }
    case ControlKind::Button:
        static_cast<QPushButton*>(widget)->setText(ToQt(control.Caption));
        break;
    case ControlKind::TextBox:
        if (auto* text = qobject_cast<QPlainTextEdit*>(widget)) {
            text->setReadOnly(control.Locked);
            ShowText(text, Shown(control.Caption));
        } else if (auto* line = qobject_cast<QLineEdit*>(widget)) {
            line->setReadOnly(control.Locked);
            const QString shown = ToQt(control.Caption);
            if (line->text() != shown) {
                line->setText(shown);
            }
        }
        break;
    case ControlKind::ListBox:
        updateList(widget, control);
        ShowWholeRows(static_cast<QListWidget*>(widget));
        break;
    case ControlKind::CheckBox:
        static_cast<QCheckBox*>(widget)->setText(ToQt(control.Caption));
        static_cast<QCheckBox*>(widget)->setChecked(control.Value == 1);
        break;
    case ControlKind::OptionButton:
        static_cast<QRadioButton*>(widget)->setText(ToQt(control.Caption));
        static_cast<QRadioButton*>(widget)->setChecked(control.Value == 1);
        break;
    case ControlKind::Frame:
        static_cast<QGroupBox*>(widget)->setTitle(ToQt(control.Caption));
        break;
    case ControlKind::Picture: {
        const Screen* screen = live();
        static_cast<PictureWidget*>(widget)->setPicture(
            pictures && screen != nullptr ? pictures(*screen, control) : nullptr, pixelsPerTwip);
        break;
    }
    case ControlKind::Timer:
        break;
    }
    const Screen* screen = live();
    widget->setVisible(screen != nullptr ? screen->IsShown(control) : control.Visible);
}

void ScreenView::updateList(QWidget* widget, const Control& control) {
    auto* list = static_cast<QListWidget*>(widget);
    QStringList items;
    items.reserve(static_cast<qsizetype>(control.Items.size()));
    for (const std::string& item : control.Items) {
        items << ToQt(item);
    }
    // Items that only change their text (a mark put in front) keep their place and selection.
    if (list->count() == items.size()) {
        for (int i = 0; i < list->count(); ++i) {
            if (list->item(i)->text() != items[i]) {
                list->item(i)->setText(items[i]);
            }
        }
    } else {
        list->clear();
        list->addItems(items);
    }
    const int index =
        control.ListIndex >= 0 && control.ListIndex < list->count() ? control.ListIndex : -1;
    if (control.MultiSelect) {
        for (int i = 0; i < list->count(); ++i) {
            list->item(i)->setSelected(control.IsHighlighted(i));
        }
        // A new current item scrolls into view; the user's scrolling stays otherwise.
        if (index >= 0 && list->currentRow() != index) {
            list->selectionModel()->setCurrentIndex(list->model()->index(index, 0),
                                                    QItemSelectionModel::NoUpdate);
        }
    } else if (list->currentRow() != index || (index >= 0 && !list->item(index)->isSelected())) {
        list->setCurrentRow(index);
    }
}

bool ScreenView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease) {
        auto* mouse = static_cast<QMouseEvent*>(event);
        auto* widget = qobject_cast<QWidget*>(watched);
        if (widget != nullptr && mouse->button() == Qt::LeftButton &&
            widget->rect().contains(mouse->position().toPoint())) {
            click(FromQt(widget->objectName()));
        }
    }
    return QFrame::eventFilter(watched, event);
}

void ScreenView::act(const std::string& controlName, const std::function<void(Control&)>& change,
                     const std::function<void()>& event) {
    Screen* screen = live();
    if (screen == nullptr || !dispatch_) {
        return;
    }
    Control* control = screen->Find(controlName);
    if (control == nullptr) {
        return;
    }
    if (change) {
        change(*control);
    }
    dispatch_(event);
}

void ScreenView::click(const std::string& controlName,
                       const std::function<void(Control&)>& change) {
    act(controlName, change, [this, controlName] { module_.Click(name_, controlName); });
}

void ScreenView::typed(const std::string& controlName, std::string text) {
    // A text longer than a text box holds is refused; the next refresh shows the old one again.
    act(
        controlName, [&text](Control& c) { c.SetText(std::move(text)); },
        [this, controlName] { module_.Change(name_, controlName); });
}

void ScreenView::itemDoubleClicked(const std::string& controlName, int item) {
    act(
        controlName, [item](Control& c) { c.ListIndex = item; },
        [this, controlName, item] { module_.DoubleClick(name_, controlName, item); });
}

void ScreenView::chooseOption(const std::string& controlName) {
    Screen* screen = live();
    if (screen == nullptr) {
        return;
    }
    const Control* chosen = screen->Find(controlName);
    if (chosen == nullptr) {
        return;
    }
    // Choosing an option turns off the others of its group: those in the same frame.
    const Control* container = ContainerOf(*screen, *chosen);
    for (Control& control : screen->Controls()) {
        if (control.Kind == ControlKind::OptionButton &&
            ContainerOf(*screen, control) == container) {
            control.Value = control.Name == controlName ? 1 : 0;
        }
    }
    click(controlName);
}

void ScreenView::listSelectionChanged(const std::string& controlName) {
    auto* list = qobject_cast<QListWidget*>(bindings_.at(controlName).widget.data());
    if (list == nullptr) {
        return;
    }
    std::vector<bool> selected(static_cast<std::size_t>(list->count()), false);
    for (const QListWidgetItem* item : list->selectedItems()) {
        selected[static_cast<std::size_t>(list->row(item))] = true;
    }
    // The view moves the current row before it changes the selection, so the current row is the
    // item the user just clicked or reached with the keys.
    const int current = list->currentRow();
    act(
        controlName,
        [&selected, current](Control& c) {
            if (c.MultiSelect) {
                c.Highlighted.resize(c.Items.size(), false);
                std::copy_n(selected.begin(), std::min(selected.size(), c.Highlighted.size()),
                            c.Highlighted.begin());
                c.ListIndex = current;
            } else {
                const auto on = std::find(selected.begin(), selected.end(), true);
                c.ListIndex = on == selected.end() ? -1 : static_cast<int>(on - selected.begin());
            }
        },
        [this, controlName] { module_.Click(name_, controlName); });
}

void ScreenView::holdClicks() {
    hold_->arm();
}

bool ScreenView::holdsClicks() const {
    return hold_->holding();
}

void ScreenView::takeFocus() {
    const QWidget* focused = QApplication::focusWidget();
    if (focused != nullptr && isAncestorOf(focused)) {
        return;
    }
    // Where the screen last sent the focus, else the first stop of the tab order.
    std::vector<QWidget*> candidates;
    if (const Screen* screen = live()) {
        const auto sent = bindings_.find(screen->Focus());
        if (sent != bindings_.end() && sent->second.widget) {
            candidates.push_back(sent->second.widget.data());
        }
    }
    candidates.insert(candidates.end(), tabOrder_.begin(), tabOrder_.end());
    for (QWidget* candidate : candidates) {
        if (candidate->isVisibleTo(this) && candidate->isEnabled()) {
            candidate->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
}

} // namespace lorvane::gui
