// Two real processes: a second start with a document the first one shows must end without a
// window, and the first instance must be asked to come forward.

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

QProcessEnvironment IsolatedEnvironment(const QString& socketFolder)
{
    // The sockets live in the temporary folder; a private one keeps other runs out.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), socketFolder);
    environment.insert(QStringLiteral("USER"), QStringLiteral("probe-user"));
    return environment;
}

/// Starts the probe with its sockets in `folder`.
void StartProbe(QProcess& process, const QString& folder, const QStringList& arguments)
{
    process.setProcessEnvironment(IsolatedEnvironment(folder));
    process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/instance_probe"),
                  arguments);
}

/// Starts a probe instance showing `shown`; true once it listens.
bool Serve(QProcess& process, const QString& folder, const QString& shown)
{
    StartProbe(process, folder, {QStringLiteral("serve"), shown});
    return process.waitForReadyRead(10000) && process.readLine().trimmed() == "listening";
}

} // namespace

class TestInstances : public QObject
{
    Q_OBJECT

private slots:
    void SecondStartWithSameFileRaisesFirstAndEnds()
    {
        QTemporaryDir sockets;
        QVERIFY(sockets.isValid());
        const QString document = sockets.path() + QStringLiteral("/data file.csv");

        QProcess first;
        QVERIFY(Serve(first, sockets.path(), document));

        QProcess second;
        second.setWorkingDirectory(sockets.path());
        StartProbe(second, sockets.path(),
                   {QStringLiteral("start"), QStringLiteral("data file.csv")});
        QVERIFY(second.waitForFinished(20000));
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(second.readAllStandardOutput(), QByteArray());

        QVERIFY(first.waitForFinished(10000));
        QCOMPARE(first.readAllStandardOutput().trimmed(), QByteArray("activated"));
    }

    void OtherFileOpensItsOwnWindow()
    {
        QTemporaryDir sockets;
        QProcess first;
        QVERIFY(Serve(first, sockets.path(), sockets.path() + QStringLiteral("/a.csv")));

        const QString other = sockets.path() + QStringLiteral("/b.csv");
        QProcess second;
        StartProbe(second, sockets.path(), {QStringLiteral("start"), other});
        QVERIFY(second.waitForFinished(20000));
        QCOMPARE(second.readAllStandardOutput(), "window\nopen " + other.toUtf8() + "\n");
        first.kill();
        first.waitForFinished();
    }

    void RealEditorSecondStartEndsWithoutWindow()
    {
        QTemporaryDir dir;
        QDir(dir.path()).mkpath(QStringLiteral("config/Quirnel"));
        // An existing settings file: no first-run question holds the first instance up.
        QFile settings(dir.path() + QStringLiteral("/config/Quirnel/quiredit.dat"));
        QVERIFY(settings.open(QIODevice::WriteOnly));
        settings.close();
        QFile data(dir.path() + QStringLiteral("/a.csv"));
        QVERIFY(data.open(QIODevice::WriteOnly));
        data.write("A,B\r\n1,2\r\n");
        data.close();

        QProcessEnvironment environment = IsolatedEnvironment(dir.path());
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("HOME"), dir.path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"),
                           dir.path() + QStringLiteral("/config"));
        environment.insert(QStringLiteral("XDG_DATA_HOME"), dir.path() + QStringLiteral("/data"));

        QProcess first;
        first.setProcessEnvironment(environment);
        first.setWorkingDirectory(dir.path());
        first.start(QStringLiteral(QUIRNEL_EDITOR), {QStringLiteral("a.csv")});
        QVERIFY(first.waitForStarted());
        // The instance answers once its socket is there.
        QTRY_VERIFY_WITH_TIMEOUT(
            !QDir(dir.path())
                 .entryList({QStringLiteral("Quirnel_Window_Class-*")}, QDir::System)
                 .isEmpty(),
            20000);

        QProcess second;
        second.setProcessEnvironment(environment);
        second.start(QStringLiteral(QUIRNEL_EDITOR), {dir.path() + QStringLiteral("/a.csv")});
        QVERIFY(second.waitForFinished(20000));
        QCOMPARE(second.exitStatus(), QProcess::NormalExit);
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(first.state(), QProcess::Running);
        first.kill();
        first.waitForFinished();
    }

    void StaleSocketIsSkipped()
    {
        QTemporaryDir sockets;
        const QString shown = sockets.path() + QStringLiteral("/a.csv");
        QProcess gone;
        QVERIFY(Serve(gone, sockets.path(), shown));
        gone.kill(); // leaves its socket file behind
        gone.waitForFinished();

        QProcess second;
        StartProbe(second, sockets.path(), {QStringLiteral("start"), shown});
        QVERIFY(second.waitForFinished(20000));
        QVERIFY(second.readAllStandardOutput().startsWith("window\n"));
    }
};

QTEST_GUILESS_MAIN(TestInstances)
#include "tst_instances.moc"
