import assert from 'node:assert/strict';
import { describe, it } from 'node:test';
import { row, shown, workFile } from './browser.mjs';
import { varied } from './data.mjs';

// Pictures are taken for people (build/.../pages); what is asked of them here is that something is on them.

/** How many colours a picture has, and how light it is on the whole, from 0 to 255. */
async function looked(page, picture) {
    return page.evaluate(async (bytes) => {
        const image = await createImageBitmap(new Blob([new Uint8Array(bytes)], { type: 'image/png' }));
        const canvas = new OffscreenCanvas(image.width, image.height).getContext('2d');
        canvas.drawImage(image, 0, 0);
        const { data } = canvas.getImageData(0, 0, image.width, image.height);
        const colours = new Set();
        let light = 0;
        for (let i = 0; i < data.length; i += 4) {
            colours.add(data[i] << 16 | data[i + 1] << 8 | data[i + 2]);
            light += data[i + 1];
        }
        return { colours: colours.size, light: light / (data.length / 4) };
    }, [...picture]);
}

describe('the page', () => {
    for (const colorScheme of ['light', 'dark']) {
        for (const [width, height] of [[1280, 800], [400, 800]]) {
            it(`can be looked at in ${colorScheme}, ${width} wide`, async () => {
                const viewport = { width, height };
                const { page, complaints } = await shown('varied', varied(), { colorScheme, viewport });
                await page.click('#expand');
                await row(page, 'wave').click();
                const picture = await page.screenshot({ path: workFile(`${colorScheme}-${width}.png`) });
                const { colours, light } = await looked(page, picture);
                assert.ok(colours > 50, 'something is on it');
                assert.ok(colorScheme === 'light' ? light > 200 : light < 60, `it is ${colorScheme}: ${light}`);
                const wide = await page.evaluate(() => document.documentElement.scrollWidth);
                assert.equal(wide, width, 'nothing stands out');
                assert.deepEqual(complaints, []);
            });
        }
    }
});
