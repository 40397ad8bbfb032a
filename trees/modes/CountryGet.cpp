#include "trees/modes/shared.h"

// Asks in which country the robot works.
TREE(CountryGet)
{
    return ask_service_for(key::Get_Country_Event, key::country, "BT  -> Country:");
}
