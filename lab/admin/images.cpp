// Firmware images, put where switches fetch them.
#include "lab/admin/handlers.h"

namespace lab {

namespace {

std::string read_image_name(const Request& request) {
    if (!ImageFolder::good_name(request.words[0]))
        throw Refusal{400, "an image is named with letters, digits, \".\", \"_\" and \"-\""};
    return request.words[0];
}

} // namespace

Reply list_images(const Request& request) {
    Json list = Json::array();
    for (const auto& [name, bytes] : request.parts.images.list())
        list.push_back({{"name", name}, {"bytes", bytes}});
    return reply_json(list);
}

Reply put_image(const Request& request) {
    const std::string name = read_image_name(request);
    refuse_flawed_body(request);
    request.parts.images.put(name, request.call.body);
    return reply_json({{"name", name}, {"bytes", request.call.body.size()}}, 201);
}

Reply drop_image(const Request& request) {
    if (!request.parts.images.drop(read_image_name(request)))
        throw Refusal{404, "there is no such image"};
    return reply_json(Json::object());
}

} // namespace lab
