#pragma once

#include "CoreHarness.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>

namespace rivenfall {

/// A call of a program, told as a sentence: what it is given, what it has to write, and how it has
/// to end. "…" stands for any text there. What is told on standard error has to be asked for.
class Call {
public:
    /// The document doc.tvq with these trees.
    [[nodiscard]] Call& Of(const std::vector<Sketch>& compilers,
                           const char* variables = "EMPTY(~)") {
        StoreBytes(Folder + u"/doc.tvq"_s, DocumentImage(compilers, Sketches(variables)));
        Arguments += u"doc.tvq"_s;
        return *this;
    }
    [[nodiscard]] Call& Prints(const std::string& output) {
        Output = output;
        return *this;
    }
    [[nodiscard]] Call& Tells(const std::string& error) {
        Error = error;
        return *this;
    }
    /// Carries the call out. The status is 128 and the number of a signal that ends it, as in a
    /// shell. Gives what was printed.
    std::string Ends(int status) {
        QProcess process;
        process.setWorkingDirectory(Folder);
        process.setProcessEnvironment(Environment);
        process.start(Program, Arguments);
        EXPECT_TRUE(process.waitForFinished(20000));
        const bool ended = process.exitStatus() == QProcess::NormalExit;
        const QByteArray output = process.readAllStandardOutput();
        const QByteArray error = process.readAllStandardError();
        SCOPED_TRACE(Arguments.join(u' ').toStdString());
        EXPECT_EQ(process.exitCode() + (ended ? 0 : 128), status);
        EXPECT_TRUE(Fits(output, Output)) << output.constData() << "\n-- in place of\n" << Output;
        EXPECT_TRUE(Fits(error, Error)) << error.constData() << "\n-- in place of\n" << Error;
        return output.toStdString();
    }

    QString Program;
    QStringList Arguments;
    QString Folder;
    QProcessEnvironment Environment;
    std::string Output = "…";
    std::string Error = {};

private:
    static bool Fits(const QByteArray& text, const std::string& expected) {
        const QString pattern =
            QRegularExpression::escape(QString::fromLatin1(QByteArrayView(expected)))
                .replace(QRegularExpression::escape(QString::fromLatin1("…")), u".*"_s);
        return QRegularExpression(QRegularExpression::anchoredPattern(pattern),
                                  QRegularExpression::DotMatchesEverythingOption)
            .match(QString::fromLatin1(text))
            .hasMatch();
    }
};

/// A test of the program without a screen, in a folder of its own. Scripts find the program as
/// $RUN.
class RunnerTest : public testing::Test {
protected:
    RunnerTest() {
        QDir(Folder.path()).mkdir(u"home"_s);
        // A folder in the tester's own that may not be read would turn "no such program" into "no
        // permission".
        Environment.insert(u"PATH"_s, u"/usr/local/bin:/usr/bin:/bin"_s);
        Environment.insert(u"RUN"_s, Program);
        Environment.insert(u"HOME"_s, Path("home"));
    }

    void TearDown() override {
        EXPECT_TRUE(QDir().rmdir(Path("home"))) << "something is left there";
    }

    QString Path(const char* name) { return Folder.filePath(QString::fromUtf8(name)); }
    bool Exists(const char* name) { return QFile::exists(Path(name)); }
    std::string TextOf(const char* name) { return BytesOf(Path(name)).toStdString(); }

    void Document(const std::vector<Sketch>& compilers, const char* name = "doc.tvq",
                  const char* variables = "EMPTY(~)") {
        StoreBytes(Path(name), DocumentImage(compilers, Sketches(variables)));
    }

    /// The program with @p options, parted by blanks.
    Call Run(const std::string& options = {}) {
        return {Program, QString::fromStdString(options).split(u' ', Qt::SkipEmptyParts),
                Folder.path(), Environment};
    }
    /// bash, which carries out @p script.
    Call Bash(const std::string& script) {
        return {u"bash"_s, {u"-c"_s, QString::fromStdString(script)}, Folder.path(), Environment};
    }

    static std::string FrameOf(const QString& issue, const char* result = "success") {
        return Frame(issue, QLatin1StringView(result)).remove(u'\r').toStdString();
    }

    const QString Program = QString::fromUtf8(RIVENFALL_PROGRAMS "/rivenfall-run");
    QTemporaryDir Folder;
    QProcessEnvironment Environment = QProcessEnvironment::systemEnvironment();
};

} // namespace rivenfall
