// The strike window, worked as a user does.
#include <QTest>
class StrikeTest : public QObject { Q_OBJECT };
QTEST_MAIN(StrikeTest)
#include "strike_test.moc"
