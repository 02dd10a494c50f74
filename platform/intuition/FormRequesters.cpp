#include "platform/intuition/FormRequesters.h"

#include "platform/dos/HostPaths.h"
#include "platform/intuition/Application.h"
#include "platform/intuition/HostFile.h"
#include "platform/intuition/Images.h"
#include "platform/intuition/KeyNames.h"
#include "platform/intuition/Native.h"
#include "platform/intuition/RequestDialog.h"
#include "platform/intuition/StringGadget.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QToolButton>

#include <algorithm>
#include <memory>
#include <utility>

namespace intuition {

namespace {

constexpr int FieldWidth = 260, ListWidth = 420, ListHeight = 140; // layout units
constexpr int PictureSide = 48;

FormHandler Handler; // empty: the user is asked

// Opens the choice of a drawer over the dialog; it goes by itself. The field takes what is chosen.
void ChooseDrawer(QWidget& dialog, StringGadget& field, const QString& title) {
    auto chooser = std::make_unique<QFileDialog>(&dialog, title, DialogStart(field.Text()));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::Directory);
    chooser->setOption(QFileDialog::ShowDirsOnly);
    QObject::connect(chooser.get(), &QFileDialog::fileSelected, &dialog, [&field](const QString& chosen) {
        field.SetText(dos::FromHostPath(QFile::encodeName(chosen).toStdString()));
    });
    chooser.release()->open();
}

// What stands over the gadgets of the dialog.
class FormBody : public QWidget {
public:
    explicit FormBody(const FormSpec& spec) {
        auto grid = std::make_unique<QGridLayout>();
        grid->setContentsMargins(0, 0, 0, 0);
        AddPicture(*grid, spec);
        for (const FormField& field : spec.Fields)
            AddField(*grid, field);
        for (const FormCheck& check : spec.Checks)
            AddCheck(*grid, check);
        if (!spec.Choices.empty())
            AddChoices(*grid, spec.Choices);
        setLayout(grid.release());
    }

    void TakeFocus(std::size_t field) {
        if (!Fields.empty()) {
            StringGadget& first = *Fields[std::min(field, Fields.size() - 1)];
            first.SelectAll();
            first.Native().Widget->setFocus();
        } else if (List != nullptr) {
            List->setFocus();
        }
    }
    [[nodiscard]] QListWidget* Choices() const { return List; }
    void Read(FormAnswer& answer) const {
        for (const auto& field : Fields)
            answer.Texts.push_back(field->Text());
        for (const QCheckBox* check : Checks)
            answer.Checks.push_back(check->isChecked());
        answer.Choice = List != nullptr ? static_cast<std::size_t>(std::max(List->currentRow(), 0)) : 0;
    }

private:
    static void AddPicture(QGridLayout& grid, const FormSpec& spec) {
        const ImageId image = spec.Picture.empty() ? ImageId::None : ObtainImage(spec.Picture);
        const QPixmap picture = PixmapOf(image);
        ReleaseImage(image);
        if (picture.isNull())
            return;
        auto label = std::make_unique<QLabel>();
        const auto side = static_cast<int>(PictureSide * picture.devicePixelRatio());
        label->setPixmap(picture.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation));
        const int rows = std::max(1, static_cast<int>(spec.Fields.size()));
        grid.addWidget(label.release(), 0, 0, rows, 1, Qt::AlignTop);
    }
    void AddField(QGridLayout& grid, const FormField& field) {
        const auto row = static_cast<int>(Fields.size());
        auto label = std::make_unique<QLabel>(DisplayTextWithoutMnemonic(field.Label));
        label->setTextFormat(Qt::PlainText);
        auto line = std::make_unique<StringGadget>(0, field.Text, field.MaximumBytes, field.Forbidden);
        line->SetHint(field.Label);
        line->SetMinimum(FieldWidth, -1);
        auto* edit = static_cast<QLineEdit*>(line->Native().Widget.get());
        QObject::connect(edit, &QLineEdit::returnPressed, this, [this] { focusNextChild(); });
        if (field.TakesKeys)
            ShowPressedKeys(*edit);
        label->setBuddy(edit);
        grid.addWidget(label.release(), row, 1);
        grid.addWidget(edit, row, 2);
        if (!field.ChooserTitle.empty())
            AddChooser(grid, row, field, *line);
        Fields.push_back(std::move(line));
    }
    // It comes behind the fields and the gadgets in the round of the keyboard.
    void AddChooser(QGridLayout& grid, int row, const FormField& field, StringGadget& line) {
        auto button = std::make_unique<QToolButton>();
        button->setIcon(style()->standardIcon(QStyle::SP_DirOpenIcon));
        button->setToolTip(HintText(field.ChooserTitle));
        button->setAccessibleName(DisplayText(field.ChooserTitle));
        QObject::connect(
            button.get(), &QToolButton::clicked, this,
            [this, &line, title = TitleText(field.ChooserTitle)] { ChooseDrawer(*window(), line, title); });
        grid.addWidget(button.release(), row, 3);
    }
    void AddCheck(QGridLayout& grid, const FormCheck& check) {
        auto box = std::make_unique<QCheckBox>(MarkedText(check.Label));
        box->setChecked(check.Set);
        Checks.push_back(box.get());
        grid.addWidget(box.release(), static_cast<int>(Fields.size() + Checks.size()) - 1, 2);
    }
    void AddChoices(QGridLayout& grid, const std::vector<std::string>& choices) {
        auto list = std::make_unique<QListWidget>();
        for (const std::string& choice : choices)
            list->addItem(DisplayText(choice));
        list->setCurrentRow(0);
        list->setMinimumSize(ListWidth, ListHeight);
        List = list.get();
        grid.addWidget(list.release(), static_cast<int>(Fields.size() + Checks.size()), 1, 1, 2);
    }

    std::vector<std::unique_ptr<StringGadget>> Fields; // their widgets lie in this one
    std::vector<QCheckBox*> Checks;                    // children of this one
    QListWidget* List = nullptr;
};

} // namespace

FormAnswer AskForm(Window* parent, const FormSpec& spec) {
    if (Handler)
        return Handler(spec);
    if (!DisplayIsOpen())
        return {};
    const BlockWhileAsking blocked(parent);
    auto made = std::make_unique<FormBody>(spec);
    FormBody& body = *made;
    RequestDialog dialog(
        blocked.ParentOfDialog(),
        {.Title = spec.Title, .Text = {}, .Image = RequesterImage::None, .Gadgets = spec.Gadgets},
        std::move(made));
    if (QListWidget* list = body.Choices())
        QObject::connect(list, &QListWidget::itemDoubleClicked, &dialog, [&dialog] { dialog.done(1); });
    body.TakeFocus(spec.Focus);
    FormAnswer answer;
    answer.Gadget = dialog.Ask();
    body.Read(answer);
    return answer;
}

FormHandler SetFormHandler(FormHandler handler) {
    return std::exchange(Handler, std::move(handler));
}

} // namespace intuition
