#version 440
// A picture inside a frame with rounded corners: fades out over the one pixel at the frame's edge.
// SPDX-License-Identifier: GPL-3.0-or-later

layout(location = 0) in vec2 texturePoint;
layout(location = 1) in vec2 framePoint;
layout(location = 0) out vec4 colour;

layout(std140, binding = 0) uniform Block {
    mat4 matrix;
    float opacity;
    float radius;
    vec2 frameSize;
};
layout(binding = 1) uniform sampler2D picture;

void main() {
    // The distance to the outline of a rounded rectangle, negative inside.
    vec2 corner = abs(framePoint - frameSize * 0.5) - frameSize * 0.5 + radius;
    float outside = length(max(corner, 0.0)) + min(max(corner.x, corner.y), 0.0) - radius;
    float pixel = max(fwidth(outside), 0.0001);
    float covered = clamp(0.5 - outside / pixel, 0.0, 1.0);
    colour = texture(picture, texturePoint) * (covered * opacity);
}
