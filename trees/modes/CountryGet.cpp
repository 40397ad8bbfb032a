#include "trees/modes/shared.h"

// Asks in which country the robot works.
TREE(CountryGet)
{
    return ask_service_for("Get_Country_Event", "country", "BT  -> Country:");
}
