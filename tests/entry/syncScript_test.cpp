#include "entry/syncScript.h"

#include <gtest/gtest.h>

namespace {

std::string Expected(const std::string& value)
{
    return "try{myProj = app.project;\rmyItems = myProj.numItems;\rmyComps = new Array();\r"
           "for (i = 1; i <= myProj.numItems; i++) {\r"
           "if (myProj.item(i) instanceof CompItem) {myComps.push(myProj.item(i));}\r}\r"
           "for (c = 0; c < myComps.length; c++) {\rmyComp = myComps[c];\r"
           "for (l = 1; l <= myComp.numLayers; l++) {\rmyLayer = myComp.layer(l);\r"
           "for (e = 1; e <= myLayer.Effects.numProperties; e++) {\r"
           "myFX = myLayer.Effects.property(e);\rif (myFX.matchName == \"KAL_Orv\") {\r"
           "if (myFX.property(myFX.numProperties-1).value != " +
           value + ") {myFX.property(myFX.numProperties-1).setValue(" + value +
           ");}\r}\r}\r}\r}}catch(e){}";
}

TEST(SyncScript, SetsTheBoxOfEveryInstance)
{
    EXPECT_EQ(MakeSyncScript(true), Expected("true"));
    EXPECT_EQ(MakeSyncScript(false), Expected("false"));
}

}  // namespace
