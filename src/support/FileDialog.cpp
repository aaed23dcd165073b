#include "support/FileDialog.h"

#include <QApplication>
#include <QFileDialog>

namespace rivenfall {

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
    const QString chosen = CurrentHandler ? CurrentHandler(pstrTitle) : AskUser(purpose);
    pblnCancelled = chosen.isEmpty();
    if (!pblnCancelled) {
        pstrFileName = chosen;
    }
}

QString FileDialog::AskUser(FileDialogPurpose purpose) const {
    QFileDialog dialog(QApplication::activeWindow(), pstrTitle, pstrInitialDirectory);
    dialog.setNameFilter(QStringLiteral("%1 (%2)").arg(pstrFilter.section(u'|', 0, 0),
                                                       pstrFilter.section(u'|', 1, 1)));
    dialog.setDefaultSuffix(pstrDefaultExtension.mid(1));
    dialog.setAcceptMode(purpose == FileDialogPurpose::Open ? QFileDialog::AcceptOpen
                                                            : QFileDialog::AcceptSave);
    dialog.setFileMode(pblnFileMustExist ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !pblnAskBeforeOverwriting);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

void SetFileDialogHandler(FileDialogHandler handler) {
    CurrentHandler = std::move(handler);
}

} // namespace rivenfall
