// Two real processes: a second start with a document the first one shows must end without a
// window, and the first instance must be asked to come forward.

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

QString Probe()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/instance_probe");
}

QProcessEnvironment IsolatedEnvironment(const QString& socketFolder)
{
    // The sockets live in the temporary folder; a private one keeps other runs out.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), socketFolder);
    environment.insert(QStringLiteral("USER"), QStringLiteral("probe-user"));
    return environment;
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
        first.setProcessEnvironment(IsolatedEnvironment(sockets.path()));
        first.start(Probe(), {QStringLiteral("serve"), document});
        QVERIFY(first.waitForStarted());
        QVERIFY(first.waitForReadyRead(10000));
        QCOMPARE(first.readLine().trimmed(), QByteArray("listening"));

        QProcess second;
        second.setProcessEnvironment(IsolatedEnvironment(sockets.path()));
        second.setWorkingDirectory(sockets.path());
        second.start(Probe(), {QStringLiteral("start"), QStringLiteral("data file.csv")});
        QVERIFY(second.waitForFinished(20000));
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(second.readAllStandardOutput(), QByteArray());

        QVERIFY(first.waitForFinished(10000));
        QCOMPARE(first.readAllStandardOutput().trimmed(), QByteArray("activated"));
    }

    void OtherFileOpensItsOwnWindow()
    {
        QTemporaryDir sockets;
        const QString shown = sockets.path() + QStringLiteral("/a.csv");
        QProcess first;
        first.setProcessEnvironment(IsolatedEnvironment(sockets.path()));
        first.start(Probe(), {QStringLiteral("serve"), shown});
        QVERIFY(first.waitForReadyRead(10000));

        QProcess second;
        second.setProcessEnvironment(IsolatedEnvironment(sockets.path()));
        second.start(Probe(), {QStringLiteral("start"), sockets.path() + QStringLiteral("/b.csv")});
        QVERIFY(second.waitForFinished(20000));
        QCOMPARE(second.readAllStandardOutput(),
                 QByteArray("window\nopen ") +
                     (sockets.path() + QStringLiteral("/b.csv")).toUtf8() + "\n");
        first.kill();
        first.waitForFinished();
    }

    void StaleSocketIsSkipped()
    {
        QTemporaryDir sockets;
        const QString shown = sockets.path() + QStringLiteral("/a.csv");
        QProcess gone;
        gone.setProcessEnvironment(IsolatedEnvironment(sockets.path()));
        gone.start(Probe(), {QStringLiteral("serve"), shown});
        QVERIFY(gone.waitForReadyRead(10000));
        gone.kill(); // leaves its socket file behind
        gone.waitForFinished();

        QProcess second;
        second.setProcessEnvironment(IsolatedEnvironment(sockets.path()));
        second.start(Probe(), {QStringLiteral("start"), shown});
        QVERIFY(second.waitForFinished(20000));
        QVERIFY(second.readAllStandardOutput().startsWith("window\n"));
    }
};

QTEST_GUILESS_MAIN(TestInstances)
#include "tst_instances.moc"
