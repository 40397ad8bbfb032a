#include "trees/modes/shared.h"

// Asks which camera is built in.
TREE(CameraTypeGet)
{
    return ask_service_for(key::Get_Camera_Type_Event, key::camera_type, "BT  -> camera type:");
}
