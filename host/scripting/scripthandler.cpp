#include "host/scripting/scripthandler.h"

#include "scada/actions/scripthandlernames.h"

namespace {

using namespace ScriptHandlerNames;
using Reach = ScriptHandlerInfo::Reach;
using Subject = ScriptHandlerInfo::Subject;

// In the order of the enumeration.
const ScriptHandlerInfo infos[scriptHandlerCount] = {
    {onLoad, Subject::None, Reach::Owner, "", 0,
     "The page was opened: of a shape, before the page's; the loading scripts have run."},
    {onClick, Subject::None, Reach::Owner, "", 0,
     "The left button was pressed and released on the shape, or on the bare page."},
    {onDoubleClick, Subject::None, Reach::Owner, "", 0, "The shape, or the bare page, was double-clicked."},
    {onMouseEnter, Subject::None, Reach::Owner, "", 0, "The pointer came onto the shape, or the bare page."},
    {onMouseLeave, Subject::None, Reach::Owner, "", 0, "The pointer left the shape, or the bare page."},
    {onReturnPressed, Subject::Shape, Reach::OwnerOrPage, "obj", 1, "Return was pressed in an input field."},
    {onTextChanged, Subject::Shape, Reach::OwnerOrPage, "obj,text", 2, "The user changed the text of an input field."},
    {onXIndexSelected, Subject::None, Reach::OwnerOrPage, "", 0, "Another sample of a trend was selected."},
    {onZoomLevelChanged, Subject::Canvas, Reach::Everyone, "canvasObject,zoomLevel", 2,
     "The page is shown at another zoom; 1 is its own size."},
    {onCurrentIndexChanged, Subject::Shape, Reach::OwnerOrPage, "obj,index", 2,
     "The user chose another entry of a choice; counted from 0."},
    {onRowDataRequest, Subject::Shape, Reach::OwnerOrPage, "obj,row,values", 3,
     "A table needs the cells of a row, counted from 0: the handler appends their texts to the list values."},
    {onItemClicked, Subject::Shape, Reach::OwnerOrPage, "obj,treeItem,column", 3,
     "A row of a table was clicked: the texts of its cells, and the column from 0."},
    {onItemDoubleClicked, Subject::None, Reach::OwnerOrPage, "", 0, "A row of a table was double-clicked."},
    {onGraphClicked, Subject::Shape, Reach::OwnerOrPage, "obj,xIndex,xPosition,yPosition", 4,
     "The plot of a trend was clicked: number of the nearest sample, time in milliseconds since 1970 (UTC), value."},
    {onDataLoaded, Subject::Shape, Reach::OwnerOrPage, "obj", 1,
     "Every tag that the shape is bound to has a value, for the first time since the page was opened."},
    {onDateChanged, Subject::Shape, Reach::OwnerOrPage, "obj,year,month,day", 4,
     "The user chose another date in a date field."},
    {onPointValueChanged, Subject::None, Reach::Everyone, "name,value", 2,
     "A point that the page is bound to has another value than before."},
    {onLogon, Subject::None, Reach::Everyone, "", 0, "An operator logged in."},
    {onLogout, Subject::None, Reach::Everyone, "", 0, "The operator logged out."},
};

} // namespace

const ScriptHandlerInfo& scriptHandlerInfo(ScriptHandler handler)
{
    return infos[static_cast<int>(handler)];
}

std::optional<ScriptHandler> scriptHandlerOf(const QString& name)
{
    for (int place = 0; place < scriptHandlerCount; ++place) {
        if (infos[place].name == name)
            return static_cast<ScriptHandler>(place);
    }
    return std::nullopt;
}
