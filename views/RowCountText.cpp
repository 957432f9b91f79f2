#include "views/RowCountText.h"

#include <QCoreApplication>

QString RowCountText(std::size_t rows)
{
    return rows == 1 ? QCoreApplication::translate("RowCountText", "1 row")
                     : QCoreApplication::translate("RowCountText", "%1 rows").arg(rows);
}
