// Masks of fields: "#" stands for one digit, everything else for itself. A place
// that isn't filled is a "0".
#pragma once

#include <QString>

namespace tarnvale::mask {

/// The mask with nothing typed: "00:00" for "##:##".
QString Blank(const QString& mask);
/// The digits of any text put into the mask from the left.
QString Fit(const QString& mask, const QString& text);
/// The first place for a digit at or behind `from`; the mask's length for none.
qsizetype PlaceFrom(const QString& mask, qsizetype from);
/// The last place for a digit before `from`; -1 for none.
qsizetype PlaceBefore(const QString& mask, qsizetype from);
/// Empties the places from `from` up to `to`.
void Clear(const QString& mask, QString& text, qsizetype from, qsizetype to);
/// Overwrites places from `from` on with the digits of `typed`. Returns where
/// the caret then stands: on the place behind the last digit.
qsizetype Type(const QString& mask, QString& text, qsizetype from, const QString& typed);

}  // namespace tarnvale::mask
