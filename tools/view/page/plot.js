
// Arrays of numbers as a picture.

const kPlotWidth = 1000;
const kPlotHeight = 300;
const kPlotPoints = 500;   // of a line over places
const kWayPoints = 2000;   // of the way that vectors of two make

/** The places of the least, the greatest, and one that is no number, in a part of a row of numbers. */
function telling(numbers, begin, end) {
    let low = -1;
    let high = -1;
    let gap = -1;
    for (let i = begin; i < end; ++i) {
        if (!Number.isFinite(numbers[i])) {
            gap = i;
            continue;
        }
        if (low < 0 || numbers[i] < numbers[low]) low = i;
        if (high < 0 || numbers[i] > numbers[high]) high = i;
    }
    return [low, high, gap].filter((place) => place >= 0);
}

/** Places in long rows of numbers, about `most` and in their order, that show what all of them would show. */
function thinned(rows, most) {
    const count = rows[0].length;
    const part = Math.max(1, Math.ceil(count / most * 2 * rows.length));
    const places = [];
    for (let begin = 0; begin < count; begin += part) {
        const found = new Set(rows.flatMap((numbers) => telling(numbers, begin, Math.min(begin + part, count))));
        places.push(...[...found].sort((a, b) => a - b));
    }
    return places;
}

/** The span of numbers, without those that are none; null when there are none. */
function span(numbers) {
    let low = Infinity;
    let high = -Infinity;
    for (const number of numbers) {
        if (!Number.isFinite(number)) continue;
        low = Math.min(low, number);
        high = Math.max(high, number);
    }
    return low <= high ? [low, high] : null;
}

/**
 * Where a number stands between two, from 0 to 1. All are halved first: the difference of great ones may be none. In
 * the middle where nothing else can be told, as between two that are the same.
 */
function share(value, low, high) {
    const part = (value / 2 - low / 2) / (high / 2 - low / 2);
    return Number.isFinite(part) ? part : 0.5;
}

/** Lines through [x, y], broken where one is no number, as texts for `polyline`. */
function linesThrough(points, [left, right], [low, high]) {
    const x = (value) => share(value, left, right) * (kPlotWidth - 20) + 10;
    const y = (value) => (1 - share(value, low, high)) * (kPlotHeight - 20) + 10;
    const lines = [[]];
    for (const [across, up] of points) {
        const isPoint = Number.isFinite(across) && Number.isFinite(up);
        if (isPoint) lines.at(-1).push(x(across).toFixed(1) + ',' + y(up).toFixed(1));
        else if (lines.at(-1).length) lines.push([]);
    }
    // A single point is a short line.
    return lines.filter((line) => line.length).map((line) => (line.length > 1 ? line : [line[0], line[0]]).join(' '));
}

/** Elements as numbers: truth values are 0 and 1, and numbers that came as text are as near as they can be. */
function asNumbers(elements) {
    return elements.map((element) => (element === 'NaN' ? NaN : Number(element)));
}

/** Which line is which component. */
function drawKey(components) {
    return make('div', { class: 'key' },
        kAxes.slice(0, components).map((axis, k) => make('span', { class: 'key-' + k }, axis)));
}

/**
 * The picture of an array, null where there is none to be made: a line for each component over its place, or of vectors
 * of two the way that they make.
 */
function plotOf(elements, components, unit) {
    const numbers = asNumbers(elements);
    if (numbers.length < 2 * components || components > 4) return null;
    const rows = Array.from({ length: components }, (_, k) => numbers.filter((__, i) => i % components === k));
    const heights = span(components === 2 ? rows[1] : numbers);
    const widths = components === 2 ? span(rows[0]) : [0, rows[0].length - 1];
    if (!heights || !widths) return null;
    const series = components === 2 ? [thinned(rows, kWayPoints).map((i) => [rows[0][i], rows[1][i]])]
        : rows.map((row) => thinned([row], kPlotPoints).map((i) => [i, row[i]]));
    const lines = series.flatMap((points, k) => linesThrough(points, widths, heights)
        .map((line) => draw('polyline', { class: 'line-' + k, points: line })));
    const many = counted(rows[0].length);
    const label = `Plot of ${many} values from ${heights[0]} to ${heights[1]} ${unit}`.trim();
    const box = `0 0 ${kPlotWidth} ${kPlotHeight}`;
    return make('div', { class: 'plot' },
        make('span', { class: 'high' }, String(heights[1])),
        make('span', { class: 'low' }, String(heights[0])),
        draw('svg', { role: 'img', 'aria-label': label, viewBox: box, preserveAspectRatio: 'none' }, lines),
        make('div', { class: 'along' }, make('span', {}, String(widths[0])), make('span', {}, String(widths[1]))),
        components > 2 ? drawKey(components) : null);
}
