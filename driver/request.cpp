// The request frame: the device node is opened, asked and closed.
#include "driver/request.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

int glue_util_ioctl(uint32_t command, void* record) {
    int device = open("/dev/ski", O_RDWR);
    if (device < 0)
        return REQUEST_NO_DEVICE;
    int result = ioctl(device, command, record);
    close(device);
    return result;
}
