#include "ui/dialogs/OpenPanel.h"

#include "core/model/LibrarySection.h"
#include "core/model/SupportedAudio.h"
#include "platform/FileURL.h"
#include "platform/Localization.h"

#include <QAbstractItemView>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QImageReader>
#include <QListView>
#include <QPushButton>
#include <QStandardPaths>
#include <QTreeView>

namespace {

constexpr QSize kSize{860, 560};

/// Where the last choice was made in this run.
QString& lastFolder()
{
    static QString folder;
    return folder;
}

QString& lastImageFolder()
{
    static QString folder;
    return folder;
}

/// The toolkit's dialog takes files or folders, never both: this one hands over whatever is selected in its list.
class FileAndFolderDialog final : public QFileDialog {
public:
    using QFileDialog::QFileDialog;

    QStringList chosenPaths() const { return m_chosen; }

    /// The toolkit enables its button for files only; here a selected folder will do as well.
    void letFoldersBeChosen()
    {
        auto* buttons = findChild<QDialogButtonBox*>();
        auto* list = findChild<QListView*>(QStringLiteral("listView"));
        QPushButton* add = buttons ? buttons->button(QDialogButtonBox::Open) : nullptr;
        if (!add || !list || !list->selectionModel())
            return;
        // Queued: behind the toolkit's own reaction to the same signal.
        connect(
            list->selectionModel(), &QItemSelectionModel::selectionChanged, add,
            [add, list] {
                if (list->selectionModel()->hasSelection())
                    add->setEnabled(true);
            },
            Qt::QueuedConnection);
    }

protected:
    void accept() override
    {
        m_chosen = selectedPaths();
        if (m_chosen.isEmpty()) {
            QFileDialog::accept();
            m_chosen = selectedFiles();
            return;
        }
        QDialog::done(QDialog::Accepted);
    }

private:
    QStringList selectedPaths() const
    {
        const QAbstractItemView* view = nullptr;
        for (const QAbstractItemView* candidate :
             {static_cast<QAbstractItemView*>(findChild<QListView*>(QStringLiteral("listView"))),
              static_cast<QAbstractItemView*>(findChild<QTreeView*>(QStringLiteral("treeView")))}) {
            if (candidate && candidate->isVisible())
                view = candidate;
        }
        QStringList paths;
        if (!view || !view->selectionModel())
            return paths;
        for (const QModelIndex& index : view->selectionModel()->selectedRows())
            paths.append(index.data(QFileSystemModel::FilePathRole).toString());
        return paths;
    }

    QStringList m_chosen;
};

QString audioFilter(LibraryTab tab)
{
    QStringList extensions = SupportedAudio::extensions();
    if (LibrarySection::of(tab).takesOgg)
        extensions.append(QStringLiteral("ogg"));
    QStringList patterns;
    for (const QString& extension : std::as_const(extensions)) {
        patterns.append(QStringLiteral("*.") + extension);
        patterns.append(QStringLiteral("*.") + extension.toUpper());
    }
    return VelmoraLocalization::string(QStringLiteral("Аудиофайлы и папки")) + QStringLiteral(" (") +
           patterns.join(u' ') + u')';
}

QString imageFilter()
{
    QStringList patterns;
    for (const QByteArray& format : QImageReader::supportedImageFormats()) {
        patterns.append(QStringLiteral("*.") + QString::fromLatin1(format));
        patterns.append(QStringLiteral("*.") + QString::fromLatin1(format).toUpper());
    }
    return VelmoraLocalization::string(QStringLiteral("Изображения")) + QStringLiteral(" (") + patterns.join(u' ') +
           u')';
}

} // namespace

void OpenPanel::open(QWidget* parent, LibraryTab tab, std::function<void(const QList<QUrl>&)> chosen)
{
    auto* dialog = new FileAndFolderDialog(parent, VelmoraLocalization::string(QStringLiteral("Добавить файлы…")));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    dialog->setNameFilter(audioFilter(tab));
    dialog->setLabelText(QFileDialog::Accept, VelmoraLocalization::string(QStringLiteral("Добавить")));
    dialog->setLabelText(QFileDialog::Reject, VelmoraLocalization::string(QStringLiteral("Отмена")));
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    const QString music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    const QString start = lastFolder().isEmpty() ? music : lastFolder();
    if (QFileInfo(start).isDir())
        dialog->setDirectory(start);
    dialog->resize(kSize);
    dialog->letFoldersBeChosen();
    QObject::connect(dialog, &QDialog::accepted, parent, [dialog, chosen = std::move(chosen)] {
        lastFolder() = dialog->directory().absolutePath();
        QList<QUrl> urls;
        for (const QString& path : dialog->chosenPaths())
            urls.append(FileURL::fromPath(path));
        if (!urls.isEmpty())
            chosen(urls);
    });
    dialog->open();
}

void OpenPanel::openImage(QWidget* parent, std::function<void(const QUrl&)> chosen)
{
    auto* dialog = new QFileDialog(parent, VelmoraLocalization::string(QStringLiteral("Выберите обложку")));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilter(imageFilter());
    dialog->setLabelText(QFileDialog::Accept, VelmoraLocalization::string(QStringLiteral("Выбрать изображение")));
    dialog->setLabelText(QFileDialog::Reject, VelmoraLocalization::string(QStringLiteral("Отмена")));
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const QString start = lastImageFolder().isEmpty() ? pictures : lastImageFolder();
    if (QFileInfo(start).isDir())
        dialog->setDirectory(start);
    dialog->resize(kSize);
    QObject::connect(dialog, &QFileDialog::fileSelected, parent,
                     [dialog, chosen = std::move(chosen)](const QString& path) {
                         lastImageFolder() = dialog->directory().absolutePath();
                         chosen(FileURL::fromPath(path));
                     });
    dialog->open();
}
