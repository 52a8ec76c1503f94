// What the build has rendered from assets/.
#include "hosts/qt/qt_pictures.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>

namespace tarnvale {
namespace {

TEST(QtPictures, EachIsThereAtOneTwoAndThreeTimesItsSize) {
  const QStringList names = QDir(":/pictures").entryList();
  EXPECT_EQ(names.size(), 15);
  for (const QString& name : names) {
    if (name == "AAA") continue;
    const QString file = ":/pictures/" + name + "/%1.png";
    const QSize size = QImage(file.arg(1)).size();
    EXPECT_FALSE(size.isEmpty()) << name.toStdString();
    for (const int scale : {2, 3}) {
      EXPECT_EQ(QImage(file.arg(scale)).size(), size * scale) << name.toStdString();
    }
  }
}

TEST(QtPictures, AFractionOfAScaleIsTakenFromTheLargerOne) {
  const QPixmap picture = PictureNamed("mail").pixmap(QSize(48, 48), 1.5);
  EXPECT_EQ(picture.size(), QSize(72, 72));
  const QImage smoothed = QImage(":/pictures/mail/2.png")
                              .scaled(72, 72, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  EXPECT_EQ(picture.toImage().pixel(20, 20), smoothed.pixel(20, 20));
}

TEST(QtPictures, ThereIsNoneWithoutANameOrOfAnyOther) {
  EXPECT_TRUE(PictureNamed("").isNull());
  EXPECT_TRUE(PictureNamed("no such picture").isNull());
}

TEST(QtPictures, TheIconIsThereInTheSizesOfWindowsAndAreas) {
  for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
    const QImage icon = PictureNamed("AAA").pixmap(size, size).toImage();
    ASSERT_EQ(icon.size(), QSize(size, size));
    EXPECT_EQ(icon,
              QImage(QString(":/pictures/AAA/%1.png").arg(size)).convertToFormat(icon.format()))
        << "rendered for this size";
    EXPECT_LT(qAlpha(icon.pixel(0, 0)), 128) << "round corners";
    EXPECT_EQ(qAlpha(icon.pixel(size / 2, size / 2)), 255);
  }
}

}  // namespace
}  // namespace tarnvale
