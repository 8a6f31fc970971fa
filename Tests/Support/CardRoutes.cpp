#include "Support/CardRoutes.h"

#include <spa/param/props.h>
#include <spa/param/route.h>
#include <spa/pod/builder.h>

namespace TarvaneTests {

namespace {

void addFloat(spa_pod_builder& builder, std::uint32_t key, std::optional<float> value) {
    if (value) {
        spa_pod_builder_prop(&builder, key, 0);
        spa_pod_builder_float(&builder, *value);
    }
}

}  // namespace

const spa_pod& buildMadeUpRoute(const MadeUpRoute& route, std::vector<std::uint8_t>& buffer) {
    buffer.assign(4096, 0);
    spa_pod_builder builder = {};
    spa_pod_builder_init(&builder, buffer.data(), static_cast<std::uint32_t>(buffer.size()));
    spa_pod_frame object = {};
    spa_pod_builder_push_object(&builder, &object, SPA_TYPE_OBJECT_ParamRoute, SPA_PARAM_Route);
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_index, 0);
    spa_pod_builder_int(&builder, route.index);
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_device, 0);
    spa_pod_builder_int(&builder, route.device);

    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_props, 0);
    spa_pod_frame props = {};
    spa_pod_builder_push_object(&builder, &props, SPA_TYPE_OBJECT_Props, SPA_PARAM_Route);
    spa_pod_builder_prop(&builder, SPA_PROP_mute, 0);
    spa_pod_builder_bool(&builder, route.isMuted);
    spa_pod_builder_prop(&builder, SPA_PROP_channelVolumes, 0);
    spa_pod_builder_array(&builder, sizeof(float), SPA_TYPE_Float,
                          static_cast<std::uint32_t>(route.channelVolumes.size()),
                          route.channelVolumes.data());
    addFloat(builder, SPA_PROP_volumeBase, route.volumeBase);
    addFloat(builder, SPA_PROP_volumeStep, route.volumeStep);
    spa_pod_builder_pop(&builder, &props);

    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_info, 0);
    spa_pod_frame info = {};
    spa_pod_builder_push_struct(&builder, &info);
    spa_pod_builder_int(&builder, route.hardwareVolume ? 2 : 1);
    spa_pod_builder_string(&builder, "port.type");
    spa_pod_builder_string(&builder, "mic");
    if (route.hardwareVolume) {
        spa_pod_builder_string(&builder, "route.hw-volume");
        spa_pod_builder_string(&builder, route.hardwareVolume->c_str());
    }
    spa_pod_builder_pop(&builder, &info);
    spa_pod_builder_pop(&builder, &object);
    return *reinterpret_cast<const spa_pod*>(buffer.data());
}

}  // namespace TarvaneTests
