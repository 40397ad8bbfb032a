#include "trees/modes/shared.h"

// Asks which camera is built in.
TREE(CameraTypeGet)
{
    return ask_service_for("Get_Camera_Type_Event", "camera_type", "BT  -> camera type:");
}
