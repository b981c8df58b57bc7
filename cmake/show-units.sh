#!/bin/sh
# tUnit.h as the compiler sees it, for Doxygen, which does not look into an include in the middle of an enumeration.
table=$(dirname "$1")/UnitTable.inc
sed -e '/#define LVP_UNIT/d' -e '/#undef LVP_UNIT/d' -e "/#include.*UnitTable/{
r $table
d
}" "$1" | sed -E 's|^LVP_UNIT\((k[A-Za-z0-9_]+), (0x[0-9a-f]+), "(.*)"\)|    \1 = \2,  ///< "\3"|'
