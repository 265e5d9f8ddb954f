#include "camera/camData.h"

#include "camera/matrices.h"

camData MakeCamData(int denX)
{
    constexpr float kStartZoom = 3000.0f;
    camData camera;
    camera.cameraMatrix = camera.cameraInverse = IdentityMatrix4();
    camera.zoom = kStartZoom / static_cast<float>(denX);
    return camera;
}
