
// Arrays of numbers as a picture.

const kPlotWidth = 1000;
const kPlotHeight = 300;
const kPlotPoints = 500;

/** Of a long row of numbers, the least and the greatest of each of its parts, as [place, number]. */
function thinned(numbers) {
    const points = [];
    const part = Math.ceil(numbers.length / kPlotPoints * 2);
    for (let begin = 0; begin < numbers.length; begin += part) {
        let low = begin;
        let high = begin;
        for (let i = begin; i < Math.min(begin + part, numbers.length); ++i) {
            if (!(numbers[i] >= numbers[low])) low = i;
            if (!(numbers[i] <= numbers[high])) high = i;
        }
        for (const i of low === high ? [low] : [Math.min(low, high), Math.max(low, high)]) points.push([i, numbers[i]]);
    }
    return points;
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

/** Lines through [x, y], broken where one is no number, as texts for `polyline`. */
function linesThrough(points, [left, right], [low, high]) {
    const x = (value) => (right > left ? (value - left) / (right - left) : 0.5) * (kPlotWidth - 20) + 10;
    // Divided first: the difference of great numbers may be none.
    const y = (value) => (high > low ? (high / 2 - value / 2) / (high / 2 - low / 2) : 0.5) * (kPlotHeight - 20) + 10;
    const lines = [[]];
    for (const [across, up] of points) {
        const isPoint = Number.isFinite(across) && Number.isFinite(up);
        if (isPoint) lines.at(-1).push(x(across).toFixed(1) + ',' + y(up).toFixed(1));
        else if (lines.at(-1).length) lines.push([]);
    }
    // A single point is a short line.
    return lines.filter((line) => line.length).map((line) => (line.length > 1 ? line : [line[0], line[0]]).join(' '));
}

/** Seven digits are enough for the edge of a picture. */
function edge(number) {
    return String(Number(number.toPrecision(7)));
}

/** Elements as numbers: truth values are 0 and 1, and numbers that came as text are as near as they can be. */
function asNumbers(elements) {
    return elements.map((element) => (element === 'NaN' ? NaN : Number(element)));
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
    const series = components === 2 ? [rows[0].map((x, i) => [x, rows[1][i]])] : rows.map(thinned);
    const lines = series.flatMap((points, k) => linesThrough(points, widths, heights)
        .map((line) => draw('polyline', { class: 'line-' + k, points: line })));
    const many = counted(rows[0].length);
    const label = `Plot of ${many} values from ${edge(heights[0])} to ${edge(heights[1])} ${unit}`.trim();
    const box = `0 0 ${kPlotWidth} ${kPlotHeight}`;
    return make('div', { class: 'plot' },
        make('span', { class: 'high' }, edge(heights[1])),
        make('span', { class: 'low' }, edge(heights[0])),
        draw('svg', { role: 'img', 'aria-label': label, viewBox: box, preserveAspectRatio: 'none' }, lines),
        make('div', { class: 'along' }, make('span', {}, edge(widths[0])), make('span', {}, edge(widths[1]))));
}
