import assert from 'node:assert/strict';
import { afterEach, describe, it } from 'node:test';
import { shown } from './browser.mjs';
import { Data } from './data.mjs';

let page;
let complaints;
afterEach(() => assert.deepEqual(complaints, []));

/** Shows an array of a kind. */
async function plotted(kind, value) {
    const data = new Data('plot');
    data.add(1, kind, 'array', { value });
    ({ page, complaints } = await shown('plot', data, { address: '#array' }));
}

/** The lines of the picture, each as its points; the picture is 1,000 wide and 300 high, with an edge of 10. */
async function lines() {
    const all = await page.locator('.plot polyline').evaluateAll((each) =>
        each.map((line) => line.getAttribute('points')));
    return all.map((line) => line.split(' ').map((point) => point.split(',').map(Number)));
}

const heights = async () => (await lines()).flat().map(([, y]) => y);
const zeros = (count) => Array.from({ length: count }, () => 0);

describe('a plot', () => {
    it('shows the peaks beside what is no number', async () => {
        const value = zeros(5000);
        value[2501] = 'NaN';
        value[2502] = 70;
        value[2503] = -30;
        value[2504] = 'Infinity';
        await plotted('double', value);
        assert.equal(Math.min(...await heights()), 10);
        assert.equal(Math.max(...await heights()), 290);
        assert.equal((await lines()).length, 2, 'it is broken there');
    });

    it('is broken where a part of it holds a gap alone', async () => {
        const value = zeros(5000);
        for (let i = 1000; i < 2000; ++i) value[i] = 'NaN';
        await plotted('double', value);
        const [before, behind] = await lines();
        assert.ok(before.at(-1)[0] < 220, String(before.at(-1)));
        assert.ok(behind[0][0] > 390, String(behind[0]));
    });

    it('tells its edges with all their digits', async () => {
        await plotted('double', [1000000.25, 1000000.5]);
        assert.equal(await page.locator('.plot .low').textContent(), '1000000.25');
        assert.equal(await page.locator('.plot .high').textContent(), '1000000.5');
        assert.equal(await page.locator('.plot svg').getAttribute('aria-label'),
            'Plot of 2 values from 1000000.25 to 1000000.5');
    });

    it('of the greatest and the least numbers there are has its points', async () => {
        await plotted('vector2', [-1.7e308, 0, 0, 5e-324, 1.7e308, 0]);
        assert.deepEqual(await lines(), [[[10, 150], [500, 150], [990, 150]]]);
        await plotted('double', [-1.7e308, 1.7e308]);
        assert.deepEqual(await lines(), [[[10, 290], [990, 10]]]);
    });

    it('of vectors has a key that tells which line is which component', async () => {
        await plotted('vector3', [1, 2, 3, 4, 5, 6]);
        assert.deepEqual(await page.locator('.plot .key span').allTextContents(), ['x', 'y', 'z']);
        const [keys, strokes] = await page.evaluate(() => [
            [...document.querySelectorAll('.key span')].map((key) => getComputedStyle(key, '::before').borderTopColor),
            [...document.querySelectorAll('polyline')].map((line) => getComputedStyle(line).stroke)]);
        assert.deepEqual(keys, strokes);
        await plotted('vector4', [1, 2, 3, 4, 5, 6, 7, 8]);
        assert.deepEqual(await page.locator('.plot .key span').allTextContents(), ['x', 'y', 'z', 'w']);
        await plotted('vector2', [1, 2, 3, 4]);
        assert.equal(await page.locator('.plot .key').count(), 0);
    });

    it('of a long way has some 2,000 points, those at its edges among them', async () => {
        const way = Array.from({ length: 50000 }, (_, i) => [Math.cos(i / 5000), Math.sin(i / 5000)]);
        way[33333][1] = 9;
        way[44444][0] = -9;
        await plotted('vector2', way.flat());
        const points = (await lines()).flat();
        assert.ok(points.length > 1000 && points.length < 2500, String(points.length));
        assert.equal(Math.min(...points.map(([, y]) => y)), 10);
        assert.equal(Math.min(...points.map(([x]) => x)), 10);
    });
});
