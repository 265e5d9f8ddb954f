#include "entry/syncScript.h"

#include "entry/KAL_Orv_Strings.h"

namespace {

constexpr const char* kToEachEffect =
    "try{myProj = app.project;\r"
    "myItems = myProj.numItems;\r"
    "myComps = new Array();\r"
    "for (i = 1; i <= myProj.numItems; i++) {\r"
    "if (myProj.item(i) instanceof CompItem) {myComps.push(myProj.item(i));}\r"
    "}\r"
    "for (c = 0; c < myComps.length; c++) {\r"
    "myComp = myComps[c];\r"
    "for (l = 1; l <= myComp.numLayers; l++) {\r"
    "myLayer = myComp.layer(l);\r"
    "for (e = 1; e <= myLayer.Effects.numProperties; e++) {\r"
    "myFX = myLayer.Effects.property(e);\r";

// To scripts the last property of an effect is the host's own group: the one before it is the
// effect's last parameter.
constexpr const char* kBox = "myFX.property(myFX.numProperties-1)";

constexpr const char* kEnd =
    "}\r"
    "}\r"
    "}\r"
    "}}catch(e){}";

}  // namespace

std::string MakeSyncScript(bool allow)
{
    const std::string value = allow ? "true" : "false";
    std::string script = kToEachEffect;
    script.append("if (myFX.matchName == \"").append(kMatchName).append("\") {\r");
    script.append("if (").append(kBox).append(".value != ").append(value);
    script.append(") {").append(kBox).append(".setValue(").append(value).append(");}\r");
    return script.append(kEnd);
}
