#version 440
// A picture inside a frame with rounded corners: hands on where each point lies in the frame.
// SPDX-License-Identifier: GPL-3.0-or-later

layout(location = 0) in vec4 position;
layout(location = 1) in vec2 textureCoordinate;
layout(location = 0) out vec2 texturePoint;
layout(location = 1) out vec2 framePoint;

layout(std140, binding = 0) uniform Block {
    mat4 matrix;
    float opacity;
    float radius;
    vec2 frameSize;
};

void main() {
    texturePoint = textureCoordinate;
    framePoint = position.xy;
    gl_Position = matrix * position;
}
