#include "document/ReadSettings.h"

std::optional<std::u16string> ReadSettingsFault(std::int32_t startAddress, std::int32_t rowCount)
{
    if (startAddress < 0)
        return u"The Address for reading data is error , it can' be less than 0!";
    if (rowCount < 1)
        return u"The array number is error ,it must be Integer and larger than 0!";
    return std::nullopt;
}

CRecipeRows LayOutRows(const ReadSettings& settings)
{
    CRecipeRows rows;
    if (settings.format.totalLength() != 0)
        rows.LayOut(LayOutColumns(settings.format), settings.startAddress, settings.rowCount);
    return rows;
}
