// objectModel.h: the objects that a script finds, in the script's own language.
#pragma once

namespace orv {

/// A function of the project (see protocol.h). Defines `app` and `CompItem`, and returns the list
/// into which `setValue` writes. Positions count from 1 for scripts, from 0 outside.
inline constexpr const char* kObjectModel = R"js((function (project) {
'use strict';
var assignments = [];
var global = new Function('return this')();

function position(k, count, what) {
    if (typeof k !== 'number' || k % 1 !== 0 || k < 1 || k > count)
        throw new RangeError(what + ' ' + k + ' is not one of 1 to ' + count);
    return k - 1;
}
function define(object, getters, methods) {
    Object.keys(getters).forEach(function (name) {
        Object.defineProperty(object, name, {get: getters[name], enumerable: true});
    });
    Object.keys(methods).forEach(function (name) {
        Object.defineProperty(object, name, {value: methods[name], enumerable: true});
    });
    return Object.freeze(object);
}
function numbers(value) {
    var list = value instanceof Array ? value : [value];
    return list.map(function (each) {
        if (typeof each === 'boolean') return each ? 1 : 0;
        if (typeof each !== 'number' || !isFinite(each))
            throw new TypeError('a value must be a number, a switch or a list of numbers');
        return each;
    });
}
function rangeOf(at, index) {
    var comp = project.compositions[at.composition];
    if (project.kinds[index] === 'layer') return [0, comp.length];
    if (project.kinds[index] === 'mask') return [0, comp[at.layer].masks];
    return project.kinds[index] === 'switch' ? [0, 1] : project.ranges[index];
}

function makeParameter(effect, at, index) {
    var kind = project.kinds[index];
    return define({}, {
        matchName: function () { return project.matchNames[index]; },
        value: function () {
            if (kind === 'none') return undefined;
            var now = effect.values[index];
            return kind === 'list' ? now.slice() : now[0];
        }
    }, {
        setValue: function (value) {
            if (kind === 'none') throw new TypeError('a group has no value');
            if (effect.keyed.indexOf(index + 1) >= 0)
                throw new TypeError('a value with key frames cannot be set');
            var list = numbers(value), range = rangeOf(at, index);
            if (list.length !== effect.values[index].length)
                throw new TypeError('the value needs ' + effect.values[index].length + ' numbers');
            list.forEach(function (each) {
                if (range && (each < range[0] || each > range[1]))
                    throw new RangeError(each + ' is outside ' + range[0] + ' to ' + range[1]);
            });
            effect.values[index] = list;
            assignments.push([at.composition, at.layer, at.effect, index + 1, list]);
        }
    });
}
// After an effect's own parameters stands the host's group.
function makeHostGroup() {
    return define({}, {matchName: function () { return 'Compositing'; },
                       value: function () { return undefined; }},
                  {setValue: function () { throw new TypeError('a group has no value'); }});
}
function makeEffect(effect, at) {
    var own = effect.values ? effect.values.length : 0;
    return define({}, {
        matchName: function () { return effect.name; },
        numProperties: function () { return own + 1; }
    }, {
        property: function (k) {
            var index = position(k, own + 1, 'property');
            return index < own ? makeParameter(effect, at, index) : makeHostGroup();
        }
    });
}
function makeLayer(layer, composition, index) {
    var effects = define({}, {
        numProperties: function () { return layer.effects.length; }
    }, {
        property: function (k) {
            var e = position(k, layer.effects.length, 'effect');
            return makeEffect(layer.effects[e],
                              {composition: composition, layer: index, effect: e});
        }
    });
    return define({}, {Effects: function () { return effects; }}, {});
}

function CompItem() { throw new TypeError('a composition cannot be made'); }
function PictureItem() { throw new TypeError('a picture cannot be made'); }
function makeItem(index) {
    var layers = project.compositions[index];
    if (!layers) return Object.freeze(Object.create(PictureItem.prototype));
    return define(Object.create(CompItem.prototype), {
        numLayers: function () { return layers.length; }
    }, {
        layer: function (k) {
            var l = position(k, layers.length, 'layer');
            return makeLayer(layers[l], index, l);
        }
    });
}

var count = project.compositions.length + project.pictures;
define(global.app = {}, {
    project: function () { return items; }
}, {});
var items = define({}, {
    numItems: function () { return count; }
}, {
    item: function (k) { return makeItem(position(k, count, 'item')); }
});
global.CompItem = CompItem;
return assignments;
}))js";

}  // namespace orv
