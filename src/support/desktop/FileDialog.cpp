#include "support/desktop/FileDialog.h"

#include "support/Title.h"
#include "support/desktop/DialogOwner.h"
#include "system/MessageBox.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

FileDialogHandler CurrentHandler;

} // namespace

void FileDialog::ShowOpen() {
    Show(FileDialogPurpose::Open);
}

void FileDialog::ShowSave() {
    Show(FileDialogPurpose::Save);
}

void FileDialog::Show(FileDialogPurpose purpose) {
    const bool saving = purpose == FileDialogPurpose::Save;
    QString start = StartFolder() + u'/';
    if (saving) {
        start += QFileInfo(pstrDocument).fileName();
    }
    QString chosen;
    do {
        chosen = CurrentHandler ? CurrentHandler(pstrTitle, start) : AskUser(purpose, start);
        if (saving) {
            chosen = WithExtension(chosen);
        }
        start = chosen;
    } while (saving && !MayBeReplaced(chosen));

    pblnCancelled = chosen.isEmpty();
    if (!pblnCancelled) {
        pstrFileName = chosen;
    }
}

/// A folder that the user can't write to, as that of an installed program, counts as none.
QString FileDialog::StartFolder() const {
    if (!pstrInitialDirectory.isEmpty() && QFileInfo(pstrInitialDirectory).isWritable()) {
        return pstrInitialDirectory;
    }
    return pstrDocument.isEmpty() ? QDir::currentPath() : QFileInfo(pstrDocument).path();
}

/// Lets the user choose, from the path @p start on: its folder, and the name behind it on offer.
QString FileDialog::AskUser(FileDialogPurpose purpose, const QString& start) const {
    QFileDialog dialog(DialogOwner(), pstrTitle, QFileInfo(start).path());
    dialog.setNameFilter(
        u"%1 (%2)"_s.arg(pstrFilter.section(u'|', 0, 0), pstrFilter.section(u'|', 1, 1)));
    if (purpose == FileDialogPurpose::Open) {
        dialog.setAcceptMode(QFileDialog::AcceptOpen);
        dialog.setDefaultSuffix(pstrDefaultExtension.mid(1));
    } else {
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        // Some desktops' dialogs ask before the extension is there, and so about another file.
        dialog.setOption(QFileDialog::DontConfirmOverwrite);
        dialog.selectFile(QFileInfo(start).fileName());
    }
    dialog.setFileMode(pblnFileMustExist ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

QString FileDialog::WithExtension(const QString& path) const {
    const bool complete =
        path.isEmpty() || path.endsWith(pstrDefaultExtension, Qt::CaseInsensitive);
    return complete ? path : path + pstrDefaultExtension;
}

/// Asks about files alone: what else there is can't be replaced, and the save will say so.
bool FileDialog::MayBeReplaced(const QString& path) const {
    if (!pblnAskBeforeOverwriting || !QFileInfo(path).isFile()) {
        return true;
    }
    const QString question = u"\"%1\" exists already.\r\nDo you want to replace it?"_s;
    return MessageBox(question.arg(QFileInfo(path).fileName()), MessageBoxStyle::YesNo,
                      ProgramTitle()) == MessageBoxAnswer::Yes;
}

void SetFileDialogHandler(FileDialogHandler handler) {
    CurrentHandler = std::move(handler);
}

} // namespace rivenfall
