#pragma once

#include <QString>

#include <functional>

namespace rivenfall {

/// What a file is chosen for.
enum class FileDialogPurpose { Open, Save };

/// The dialogs in which the user chooses a file to open or to save to. Every setting stays as it
/// was written last from one showing to the next.
class FileDialog {
public:
    /// True if the user left the latest dialog without choosing.
    bool Cancelled() const { return pblnCancelled; }

    /// Without a meaning on this platform.
    void SetDialogFlag1(bool) {}

    /// Without a meaning on this platform.
    void SetDialogFlag2(bool) {}

    /// The extension, with its point, that a name chosen without it gets.
    void SetDefaultExtension(const QString& extension) { pstrDefaultExtension = extension; }

    /// The dialog's caption.
    void SetDialogTitle(const QString& title) { pstrTitle = title; }

    /// True lets only a file that exists be chosen.
    void SetDialogFlag3(bool flag) { pblnFileMustExist = flag; }

    /// The full path that was chosen in the latest dialog that wasn't cancelled.
    QString FileName() const { return pstrFileName; }

    /// Which files are listed: a description, a vertical bar and a file pattern.
    void SetDialogFilter(const QString& filter) { pstrFilter = filter; }

    /// Without a meaning on this platform.
    void SetDialogFlag4(bool) {}

    /// The folder that the next dialog starts in. An empty one, and one that the user can't write
    /// to, leaves it to the document's folder, or to the current directory where it has none.
    void SetInitialDirectory(const QString& directory) { pstrInitialDirectory = directory; }

    /// Without a meaning on this platform.
    void SetDialogFlag5(bool) {}

    /// True asks the user before a file that exists is chosen to save to, once its name is
    /// complete. The answer No leads back to the dialog.
    void SetDialogFlag6(bool flag) { pblnAskBeforeOverwriting = flag; }

    /// Without a meaning on this platform.
    void SetDialogFlag7(bool) {}

    /// The full path of the document that a file is chosen for, empty if it has none. Its name is
    /// on offer in ShowSave.
    void SetDocument(const QString& path) { pstrDocument = path; }

    /// Lets the user choose a file to open. Returns when the dialog is closed.
    void ShowOpen();

    /// Lets the user choose a file to save to. Returns when the dialog is closed.
    void ShowSave();

private:
    void Show(FileDialogPurpose purpose);
    QString StartFolder() const;
    QString AskUser(FileDialogPurpose purpose, const QString& start) const;
    QString WithExtension(const QString& path) const;
    bool MayBeReplaced(const QString& path) const;

    bool pblnCancelled = false;
    bool pblnFileMustExist = false;
    bool pblnAskBeforeOverwriting = false;
    QString pstrDefaultExtension;
    QString pstrTitle;
    QString pstrFileName;
    QString pstrFilter;
    QString pstrInitialDirectory;
    QString pstrDocument;
};

/// Something that chooses in the user's place: it is told the dialog's caption and the path that
/// the dialog starts from, a folder with a slash or with the name on offer behind it, and gives a
/// path, or an empty text to cancel.
using FileDialogHandler = std::function<QString(const QString& title, const QString& start)>;

/// Has @p handler choose in every file dialog from here on instead of the user; an empty one gives
/// them back to the user. What is asked about the choice goes to MessageBox in both cases. For
/// tests.
void SetFileDialogHandler(FileDialogHandler handler);

} // namespace rivenfall
